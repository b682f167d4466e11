#include "platform/registry/RegistryStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <vector>

#include "app/FileNames.h"
#include "platform/Components.h"

namespace cantovel {

Registry& Registry::get() {
    return Components::service<Registry>();
}

RegValue RegValue::text(const QString& s) {
    RegValue v;
    v.type = REG_SZ;
    // Settings hold paths, whose bytes need not be UTF-8.
    v.data = NameToBytes(s);
    v.data.append('\0');
    return v;
}

RegValue RegValue::dword(quint32 n) {
    RegValue v;
    v.type = REG_DWORD;
    for (int i = 0; i < 4; ++i) v.data.append(char((n >> (8 * i)) & 0xFF));
    return v;
}

QString rootName(RegRoot root) {
    switch (root) {
        case RegRoot::ClassesRoot:
            return QStringLiteral("HKEY_CLASSES_ROOT");
        case RegRoot::CurrentUser:
            return QStringLiteral("HKEY_CURRENT_USER");
        case RegRoot::LocalMachine:
            return QStringLiteral("HKEY_LOCAL_MACHINE");
        case RegRoot::Users:
            return QStringLiteral("HKEY_USERS");
    }
    return {};
}

namespace {

// Names match the way the registry matches them: without regard to case. Names are
// nearly always ASCII, which is folded here without a call into Qt.
inline char16_t fold(QChar c) {
    const char16_t u = c.unicode();
    if (u < 128) return u >= 'A' && u <= 'Z' ? char16_t(u + 32) : u;
    return c.toCaseFolded().unicode();
}

bool sameName(const QString& a, const QString& b) {
    if (a.size() != b.size()) return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && fold(a[i]) != fold(b[i])) return false;
    return true;
}

// A name as a hash key that ignores case, without making a folded copy.
struct FoldedName {
    QString name;
    bool operator==(const FoldedName& o) const { return sameName(name, o.name); }
};

size_t qHash(const FoldedName& n, size_t seed = 0) {
    // FNV-1a over the folded characters.
    size_t h = 14695981039346656037ull ^ seed;
    for (QChar c : n.name) h = (h ^ fold(c)) * 1099511628211ull;
    return h;
}

// One key of the tree a file holds. Values and subkeys stay in the order they were made.
struct Key {
    QString name;
    QList<std::pair<QString, RegValue>> values;
    std::vector<std::unique_ptr<Key>> subkeys;
    // Lines of this key's section that were not understood (comments among them): kept as
    // they stood and written back after the values, so nothing a user or another program
    // put there is lost by the next write.
    QList<QByteArray> kept;

    Key* child(const QString& n) const {
        for (const auto& k : subkeys)
            if (sameName(k->name, n)) return k.get();
        return nullptr;
    }
    Key* childOrNew(const QString& n) {
        if (Key* k = child(n)) return k;
        subkeys.push_back(std::make_unique<Key>());
        subkeys.back()->name = n;
        return subkeys.back().get();
    }
    qsizetype valueIndex(const QString& n) const { return index.value(FoldedName{n}) - 1; }
    // Writes over a value of the same name (keeping the name's first spelling), or adds one.
    void put(const QString& n, RegValue v) {
        qsizetype& slot = index[FoldedName{n}];
        if (slot > 0) {
            values[slot - 1].second = std::move(v);
            return;
        }
        values.append({n, std::move(v)});
        slot = values.size();
    }
    void removeValue(qsizetype i) {
        values.removeAt(i);
        index.clear();
        for (qsizetype j = 0; j < values.size(); ++j)
            index.insert(FoldedName{values[j].first}, j + 1);
    }

  private:
    // Name to position in `values` plus one: a key may hold hundreds of values.
    QHash<FoldedName, qsizetype> index;
};

// Key paths are separated by backslashes; empty parts (a doubled or trailing separator)
// are passed over, and the empty path is the root itself.
QStringList pathParts(const QString& path) {
    return path.split(u'\\', Qt::SkipEmptyParts);
}

Key* findKey(Key& root, const QString& path) {
    Key* k = &root;
    for (const QString& part : pathParts(path)) {
        k = k->child(part);
        if (!k) return nullptr;
    }
    return k;
}

// Characters a quoted text carries as a backslash and a letter: the export syntax's own
// two, and the line breaks, which would otherwise end the line.
constexpr std::pair<char, char> Escapes[] = {{'\\', '\\'}, {'"', '"'}, {'\r', 'r'}, {'\n', 'n'}};

// ---- parsing -------------------------------------------------------------------------

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// A hexadecimal number of 1 to `maxDigits` digits, the whole of `v`.
std::optional<quint32> hexNumber(QByteArrayView v, int maxDigits) {
    v = v.trimmed();
    if (v.isEmpty() || v.size() > maxDigits) return std::nullopt;
    quint32 n = 0;
    for (char c : v) {
        const int d = hexDigit(c);
        if (d < 0) return std::nullopt;
        n = n * 16 + quint32(d);
    }
    return n;
}

// What a file holds besides its keys: the lines not understood before the first section,
// and the sections not understood (another root's, a deletion "[-...]") with their lines.
struct Unread {
    QList<QByteArray> before, sections;
};

// Works on the file's bytes: every read parses the whole file, so this stays lean.
class Parser {
  public:
    Parser(const QByteArray& bytes, const QString& root) : text_(bytes), root_(root) {}

    // A line that cannot be read is kept and passed over; false only when there were such
    // lines and nothing at all could be read.
    bool parse(Key& tree, Unread& unread) {
        bool readSomething = false, unreadSomething = false, header = false;
        bool inForeignSection = false;
        Key* current = nullptr;
        QByteArrayView line;
        qsizetype start = pos_;
        auto keep = [&](QByteArrayView raw) {
            unreadSomething = true;
            if (current)
                current->kept << raw.toByteArray();
            else
                (inForeignSection ? unread.sections : unread.before) << raw.toByteArray();
        };
        while ((start = pos_), nextLine(line)) {
            const QByteArrayView raw = line;
            line = line.trimmed();
            if (!header && !readSomething) {
                if (line.startsWith("\xEF\xBB\xBF")) line = line.sliced(3);
                if (line == "REGEDIT4") {
                    header = readSomething = true;
                    continue;
                }
            }
            if (line.isEmpty()) continue;
            if (line.front() == '[') {
                current = section(tree, line);
                inForeignSection = !current;
                if (current)
                    readSomething = true;
                else
                    keep(raw);
            } else if ((line.front() == '"' || line.front() == '@') && current &&
                       value(*current, line)) {
                readSomething = true;
            } else {
                // A value can span lines: all of them are kept together.
                QByteArrayView span = text_.sliced(start, std::min(pos_, text_.size()) - start);
                if (span.endsWith('\n')) span.chop(1);
                if (span.endsWith('\r')) span.chop(1);
                keep(span);
            }
        }
        return readSomething || !unreadSomething;
    }

  private:
    bool nextLine(QByteArrayView& line) {
        if (pos_ >= text_.size()) return false;
        qsizetype end = text_.indexOf('\n', pos_);
        if (end < 0) end = text_.size();
        line = text_.sliced(pos_, end - pos_);
        if (line.endsWith('\r')) line.chop(1);
        pos_ = end + 1;
        return true;
    }

    // "[HKEY_CURRENT_USER\Software\Brightfen]": the key, made with its parents.
    Key* section(Key& tree, QByteArrayView line) {
        if (!line.endsWith(']') || line.size() < 3 || line[1] == '-') return nullptr;
        const QString inner = QString::fromUtf8(line.sliced(1, line.size() - 2));
        const qsizetype cut = inner.indexOf(u'\\');
        if (!sameName(inner.left(cut < 0 ? inner.size() : cut), root_)) return nullptr;
        Key* k = &tree;
        if (cut >= 0)
            for (const QString& part : pathParts(inner.mid(cut + 1))) k = k->childOrNew(part);
        return k;
    }

    // The bytes of a quoted text starting at `pos` (the opening quote); `pos` ends after
    // the closing quote.
    static bool quoted(QByteArrayView s, qsizetype& pos, QByteArray& out) {
        if (pos >= s.size() || s[pos] != '"') return false;
        qsizetype start = ++pos;
        for (; pos < s.size(); ++pos) {
            const char c = s[pos];
            if (c == '"') {
                out.append(s.sliced(start, pos - start));
                ++pos;
                return true;
            }
            if (c != '\\') continue;
            out.append(s.sliced(start, pos - start));
            if (++pos >= s.size()) return false;
            const auto* e = std::find_if(std::begin(Escapes), std::end(Escapes),
                                         [&](const auto& p) { return p.second == s[pos]; });
            if (e == std::end(Escapes)) return false;
            out.append(e->first);
            start = pos + 1;
        }
        return false;
    }

    // "01,02,ff", going on over further lines while a line ends in a backslash.
    bool hexBytes(QByteArrayView list, QByteArray& out) {
        for (;;) {
            list = list.trimmed();
            const bool more = list.endsWith('\\');
            if (more) list.chop(1);
            qsizetype i = 0;
            while (i < list.size()) {
                qsizetype comma = list.indexOf(',', i);
                if (comma < 0) comma = list.size();
                const auto byte = hexNumber(list.sliced(i, comma - i), 2);
                // A trailing comma before a continuation is allowed.
                if (!byte && !(more && comma == list.size() && list.sliced(i).trimmed().isEmpty()))
                    return false;
                if (byte) out.append(char(*byte));
                i = comma + 1;
            }
            if (!more) return true;
            if (!nextLine(list)) return false;
        }
    }

    // `"Name"=...` or `@=...`.
    bool value(Key& key, QByteArrayView line) {
        qsizetype pos = 0;
        QByteArray name;
        if (line.front() == '@')
            pos = 1;
        else if (!quoted(line, pos, name))
            return false;
        QByteArrayView data = line.sliced(pos).trimmed();
        if (!data.startsWith('=')) return false;
        data = data.sliced(1).trimmed();

        RegValue v;
        if (data.startsWith('"')) {
            qsizetype p = 0;
            if (!quoted(data, p, v.data) || !data.sliced(p).trimmed().isEmpty()) return false;
            v.data.append('\0');
        } else if (data.startsWith("dword:")) {
            const auto n = hexNumber(data.sliced(6), 8);
            if (!n) return false;
            v = RegValue::dword(*n);
        } else if (data.startsWith("hex")) {
            const qsizetype colon = data.indexOf(':');
            if (colon < 0) return false;
            const QByteArrayView kind = data.sliced(3, colon - 3);
            v.type = REG_BINARY;
            if (!kind.isEmpty()) {
                const auto t = kind.startsWith('(') && kind.endsWith(')')
                                   ? hexNumber(kind.sliced(1, kind.size() - 2), 8)
                                   : std::nullopt;
                if (!t) return false;
                v.type = *t;
            }
            if (!hexBytes(data.sliced(colon + 1), v.data)) return false;
        } else {
            return false;
        }
        key.put(QString::fromUtf8(name), std::move(v));
        return true;
    }

    QByteArrayView text_;
    QString root_;
    qsizetype pos_ = 0;
};

// ---- writing -------------------------------------------------------------------------

void appendQuoted(QByteArray& out, const QString& s) {
    out.append('"');
    for (char c : s.toUtf8()) {
        const auto* e = std::find_if(std::begin(Escapes), std::end(Escapes),
                                     [&](const auto& p) { return p.first == c; });
        if (e == std::end(Escapes))
            out.append(c);
        else
            out.append('\\').append(e->second);
    }
    out.append('"');
}

// The text of a REG_SZ that a quoted string carries exactly: valid UTF-8 with one
// terminating NUL and no other. Anything else is written as hexadecimal bytes.
std::optional<QString> plainText(const QByteArray& data) {
    if (!data.endsWith('\0')) return std::nullopt;
    const QByteArray body = data.left(data.size() - 1);
    if (body.contains('\0')) return std::nullopt;
    QString s = QString::fromUtf8(body);
    if (s.toUtf8() != body) return std::nullopt;
    return s;
}

void appendValue(QByteArray& out, const QString& name, const RegValue& v) {
    if (name.isEmpty())
        out.append('@');
    else
        appendQuoted(out, name);
    out.append('=');
    std::optional<QString> s;
    if (v.type == REG_SZ && (s = plainText(v.data))) {
        appendQuoted(out, *s);
    } else if (v.type == REG_DWORD && v.data.size() == 4) {
        quint32 n = 0;
        for (int i = 3; i >= 0; --i) n = (n << 8) | quint8(v.data[i]);
        out.append("dword:").append(QByteArray::number(n, 16).rightJustified(8, '0'));
    } else {
        out.append(v.type == REG_BINARY ? QByteArray("hex:")
                                        : "hex(" + QByteArray::number(v.type, 16) + "):");
        out.append(v.data.toHex(','));
    }
    out.append('\n');
}

void appendLines(QByteArray& out, const QList<QByteArray>& lines) {
    for (const QByteArray& line : lines) out.append(line).append('\n');
}

void appendSection(QByteArray& out, const Key& key, const QString& path) {
    out.append('[').append(path.toUtf8()).append("]\n");
    for (const auto& [name, v] : key.values) appendValue(out, name, v);
    appendLines(out, key.kept);
    out.append('\n');
}

void appendKey(QByteArray& out, const Key& key, const QString& path) {
    appendSection(out, key, path);
    for (const auto& sub : key.subkeys) appendKey(out, *sub, path + u'\\' + sub->name);
}

QByteArray serialize(const Key& tree, const Unread& unread, const QString& root) {
    QByteArray out("REGEDIT4\n\n");
    if (!unread.before.isEmpty()) {
        appendLines(out, unread.before);
        out.append('\n');
    }
    if (!tree.values.isEmpty() || !tree.kept.isEmpty()) appendSection(out, tree, root);
    for (const auto& sub : tree.subkeys) appendKey(out, *sub, root + u'\\' + sub->name);
    if (!unread.sections.isEmpty()) {
        appendLines(out, unread.sections);
        out.append('\n');
    }
    return out;
}

// ---- files ---------------------------------------------------------------------------

enum class Load { Ok, Damaged, Failed };

// The whole file; nothing when it cannot be read, empty when it does not exist.
std::optional<QByteArray> readFile(const QString& file) {
    const int fd = ::open(NameToBytes(file).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno == ENOENT ? std::optional<QByteArray>(QByteArray()) : std::nullopt;
    struct stat st {};
    QByteArray bytes;
    bool ok = ::fstat(fd, &st) == 0;
    if (ok) bytes.reserve(qsizetype(st.st_size) + 1);
    char chunk[16384];
    while (ok) {
        const ssize_t n = ::read(fd, chunk, sizeof chunk);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ok = n == 0;
            break;
        }
        bytes.append(chunk, n);
    }
    ::close(fd);
    return ok ? std::optional<QByteArray>(std::move(bytes)) : std::nullopt;
}

Load load(const QString& file, const QString& root, Key& tree, Unread* unread = nullptr) {
    tree = Key{};
    Unread ignored;
    if (!unread) unread = &ignored;
    *unread = Unread{};
    const std::optional<QByteArray> bytes = readFile(file);
    if (!bytes) return Load::Failed;
    if (bytes->isNull()) return Load::Ok;  // no file yet
    if (!Parser(*bytes, root).parse(tree, *unread)) {
        tree = Key{};
        *unread = Unread{};
        return Load::Damaged;
    }
    return Load::Ok;
}

// Keeps a file with nothing readable in it for the user to look at, out of the way of the
// next write. A link stays; what it points to is moved.
void putAside(const QString& link) {
    const QString file = LinkTargetOf(link);
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = file + QStringLiteral(".damaged-") + stamp;
    for (int n = 2; KindOfName(target) != NameKind::Missing; ++n)
        target = file + QStringLiteral(".damaged-") + stamp + u'-' + QString::number(n);
    ::rename(NameToBytes(file).constData(), NameToBytes(target).constData());
}

// An exclusive advisory lock on "<file>.lock", held while the object lives.
class WriteLock {
  public:
    explicit WriteLock(const QString& file) {
        fd_ = ::open(NameToBytes(file + QStringLiteral(".lock")).constData(),
                     O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (fd_ < 0) return;
        int r;
        do r = ::flock(fd_, LOCK_EX);
        while (r < 0 && errno == EINTR);
        if (r < 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }
    ~WriteLock() {
        if (fd_ >= 0) ::close(fd_);
    }
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;
    bool held() const { return fd_ >= 0; }

  private:
    int fd_ = -1;
};

// Replaces `file` with `bytes`: readers see the old file or the new one, never a part. The
// settings are the user's own: a new file is readable by its owner only.
bool replaceFile(const QString& file, const QByteArray& bytes) {
    return ReplaceFileByName(file, bytes, true, 0600);
}

enum class Change { Failed, None, Made };

// Fresh tree of a root for reading; a damaged file is put aside and reads as empty.
std::unique_ptr<Key> readTree(const QString& file, const QString& root) {
    if (file.isEmpty()) return nullptr;
    auto tree = std::make_unique<Key>();
    if (load(file, root, *tree) == Load::Damaged) {
        // Look again under the lock: a writer may have replaced it meanwhile.
        WriteLock lock(file);
        if (lock.held() && load(file, root, *tree) == Load::Damaged) putAside(file);
    }
    return tree;
}

bool modify(const QString& file, const QString& root, const std::function<Change(Key&)>& change) {
    if (file.isEmpty()) return false;
    if (!MakeFolderByName(QFileInfo(file).absolutePath())) return false;
    WriteLock lock(file);
    if (!lock.held()) return false;
    Key tree;
    Unread unread;
    switch (load(file, root, tree, &unread)) {
        case Load::Failed:
            return false;
        case Load::Damaged:
            putAside(file);
            break;
        case Load::Ok:
            break;
    }
    switch (change(tree)) {
        case Change::Failed:
            return false;
        case Change::None:
            return true;
        case Change::Made:
            break;
    }
    return replaceFile(file, serialize(tree, unread, root));
}

}  // namespace

RegistryStore::RegistryStore(QString folder) : folder_(std::move(folder)) {
    if (!folder_.isEmpty()) return;
    // The configuration folder as the environment names it, bytes and all.
    const QByteArray config = qgetenv("XDG_CONFIG_HOME");
    folder_ =
        (config.startsWith('/') ? NameFromBytes(config)
                                : NameFromBytes(qgetenv("HOME")) + QStringLiteral("/.config")) +
        QStringLiteral("/cantovel");
}

QString RegistryStore::fileFor(RegRoot root) const {
    const QString name = rootName(root);
    return name.isEmpty() ? QString() : folder_ + u'/' + name + QStringLiteral(".reg");
}

bool RegistryStore::keyExists(RegRoot root, const QString& key) {
    auto tree = readTree(fileFor(root), rootName(root));
    return tree && findKey(*tree, key);
}

bool RegistryStore::createKey(RegRoot root, const QString& key) {
    // A line break in a key name could not be written back as a section.
    if (key.contains(u'\n') || key.contains(u'\r')) return false;
    return modify(fileFor(root), rootName(root), [&](Key& tree) {
        if (findKey(tree, key)) return Change::None;
        Key* k = &tree;
        for (const QString& part : pathParts(key)) k = k->childOrNew(part);
        return Change::Made;
    });
}

std::optional<RegValue> RegistryStore::queryValue(RegRoot root, const QString& key,
                                                  const QString& name) {
    auto tree = readTree(fileFor(root), rootName(root));
    const Key* k = tree ? findKey(*tree, key) : nullptr;
    if (!k) return std::nullopt;
    const qsizetype i = k->valueIndex(name);
    if (i < 0) return std::nullopt;
    return k->values[i].second;
}

bool RegistryStore::setValue(RegRoot root, const QString& key, const QString& name,
                             const RegValue& value) {
    return modify(fileFor(root), rootName(root), [&](Key& tree) {
        Key* k = findKey(tree, key);
        if (!k) return Change::Failed;
        k->put(name, value);
        return Change::Made;
    });
}

bool RegistryStore::deleteValue(RegRoot root, const QString& key, const QString& name) {
    return modify(fileFor(root), rootName(root), [&](Key& tree) {
        Key* k = findKey(tree, key);
        const qsizetype i = k ? k->valueIndex(name) : -1;
        if (i < 0) return Change::Failed;
        k->removeValue(i);
        return Change::Made;
    });
}

bool RegistryStore::deleteKey(RegRoot root, const QString& key) {
    QStringList parts = pathParts(key);
    if (parts.isEmpty()) return false;  // a root cannot be deleted
    const QString last = parts.takeLast();
    return modify(fileFor(root), rootName(root), [&](Key& tree) {
        Key* parent = findKey(tree, parts.join(u'\\'));
        if (!parent) return Change::Failed;
        for (auto it = parent->subkeys.begin(); it != parent->subkeys.end(); ++it) {
            if (!sameName((*it)->name, last)) continue;
            if (!(*it)->subkeys.empty()) return Change::Failed;
            parent->subkeys.erase(it);
            return Change::Made;
        }
        return Change::Failed;
    });
}

QStringList RegistryStore::subKeys(RegRoot root, const QString& key) {
    QStringList out;
    auto tree = readTree(fileFor(root), rootName(root));
    if (const Key* k = tree ? findKey(*tree, key) : nullptr)
        for (const auto& sub : k->subkeys) out << sub->name;
    return out;
}

QStringList RegistryStore::valueNames(RegRoot root, const QString& key) {
    QStringList out;
    auto tree = readTree(fileFor(root), rootName(root));
    if (const Key* k = tree ? findKey(*tree, key) : nullptr)
        for (const auto& v : k->values) out << v.first;
    return out;
}

}  // namespace cantovel
