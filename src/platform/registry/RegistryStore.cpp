#include "platform/registry/RegistryStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Components.h"

namespace cantovel {

Registry& Registry::get() {
    return Components::service<Registry>();
}

RegValue RegValue::text(const QString& s) {
    RegValue v;
    v.type = REG_SZ;
    v.data = s.toUtf8();
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

bool sameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// One key of the tree a file holds. Values and subkeys stay in the order they were made.
struct Key {
    QString name;
    QList<std::pair<QString, RegValue>> values;
    std::vector<std::unique_ptr<Key>> subkeys;

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
    qsizetype valueIndex(const QString& n) const {
        for (qsizetype i = 0; i < values.size(); ++i)
            if (sameName(values[i].first, n)) return i;
        return -1;
    }
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

// ---- parsing -------------------------------------------------------------------------

class Parser {
  public:
    Parser(const QByteArray& bytes, const QString& root) : root_(root) {
        lines_ = bytes.split('\n');
    }

    // False when the text is not a REGEDIT4 file of this root.
    bool parse(Key& tree) {
        bool header = false;
        Key* current = nullptr;
        for (line_ = 0; line_ < lines_.size(); ++line_) {
            QString text = lineText(line_).trimmed();
            if (!header) {
                if (text.startsWith(QChar(0xFEFF))) text.remove(0, 1);
                if (text.isEmpty()) continue;
                if (text != QLatin1String("REGEDIT4")) return false;
                header = true;
                continue;
            }
            if (text.isEmpty() || text.startsWith(u';')) continue;
            if (text.startsWith(u'[')) {
                current = section(tree, text);
                if (!current) return false;
            } else if (text.startsWith(u'"') || text.startsWith(u'@')) {
                if (!current || !value(*current, text)) return false;
            } else {
                return false;
            }
        }
        return header;
    }

  private:
    QString lineText(qsizetype i) const {
        QByteArray raw = lines_[i];
        if (raw.endsWith('\r')) raw.chop(1);
        return QString::fromUtf8(raw);
    }

    // "[HKEY_CURRENT_USER\Software\Brightfen]": the key, made with its parents.
    Key* section(Key& tree, const QString& text) {
        if (!text.endsWith(u']') || text.size() < 3 || text[1] == u'-') return nullptr;
        const QString inner = text.mid(1, text.size() - 2);
        const qsizetype cut = inner.indexOf(u'\\');
        if (!sameName(inner.left(cut < 0 ? inner.size() : cut), root_)) return nullptr;
        Key* k = &tree;
        if (cut >= 0)
            for (const QString& part : pathParts(inner.mid(cut + 1))) k = k->childOrNew(part);
        return k;
    }

    // A quoted text from `pos` (at the opening quote); `pos` ends after the closing one.
    static bool quoted(const QString& s, qsizetype& pos, QString& out) {
        if (pos >= s.size() || s[pos] != u'"') return false;
        for (++pos; pos < s.size(); ++pos) {
            QChar c = s[pos];
            if (c == u'"') {
                ++pos;
                return true;
            }
            if (c == u'\\') {
                if (++pos >= s.size()) return false;
                switch (s[pos].unicode()) {
                    case '\\':
                        c = u'\\';
                        break;
                    case '"':
                        c = u'"';
                        break;
                    case 'r':
                        c = u'\r';
                        break;
                    case 'n':
                        c = u'\n';
                        break;
                    default:
                        return false;
                }
            }
            out.append(c);
        }
        return false;
    }

    static bool hexBytes(const QString& list, QByteArray& out) {
        const QString t = list.trimmed();
        if (t.isEmpty()) return true;
        for (const QString& item : t.split(u',')) {
            const QString b = item.trimmed();
            bool ok = false;
            const uint v = b.toUInt(&ok, 16);
            if (!ok || b.size() > 2 || v > 0xFF) return false;
            out.append(char(v));
        }
        return true;
    }

    // `"Name"=...` or `@=...`.
    bool value(Key& key, const QString& text) {
        qsizetype pos = 0;
        QString name;
        if (text[0] == u'@') {
            pos = 1;
        } else if (!quoted(text, pos, name)) {
            return false;
        }
        while (pos < text.size() && text[pos].isSpace()) ++pos;
        if (pos >= text.size() || text[pos] != u'=') return false;
        QString data = text.mid(pos + 1).trimmed();

        RegValue v;
        if (data.startsWith(u'"')) {
            qsizetype p = 0;
            QString s;
            if (!quoted(data, p, s) || !data.mid(p).trimmed().isEmpty()) return false;
            v = RegValue::text(s);
        } else if (data.startsWith(QLatin1String("dword:"), Qt::CaseInsensitive)) {
            const QString digits = data.mid(6).trimmed();
            bool ok = false;
            const uint n = digits.toUInt(&ok, 16);
            if (!ok || digits.isEmpty() || digits.size() > 8) return false;
            v = RegValue::dword(n);
        } else if (data.startsWith(QLatin1String("hex"), Qt::CaseInsensitive)) {
            const qsizetype colon = data.indexOf(u':');
            if (colon < 0) return false;
            const QString kind = data.mid(3, colon - 3);
            v.type = REG_BINARY;
            if (!kind.isEmpty()) {
                if (!kind.startsWith(u'(') || !kind.endsWith(u')')) return false;
                bool ok = false;
                v.type = kind.mid(1, kind.size() - 2).toUInt(&ok, 16);
                if (!ok) return false;
            }
            QString list = data.mid(colon + 1);
            // Long lists go on over several lines, each ending in a backslash.
            while (list.trimmed().endsWith(u'\\')) {
                list = list.trimmed();
                list.chop(1);
                if (++line_ >= lines_.size()) return false;
                list += lineText(line_);
            }
            if (!hexBytes(list, v.data)) return false;
        } else {
            return false;
        }
        const qsizetype i = key.valueIndex(name);
        if (i >= 0)
            key.values[i].second = v;
        else
            key.values.append({name, v});
        return true;
    }

    QString root_;
    QList<QByteArray> lines_;
    qsizetype line_ = 0;
};

// ---- writing -------------------------------------------------------------------------

void appendQuoted(QByteArray& out, const QString& s) {
    out.append('"');
    for (QChar c : s) {
        switch (c.unicode()) {
            case '\\':
                out.append("\\\\");
                break;
            case '"':
                out.append("\\\"");
                break;
            case '\r':
                out.append("\\r");
                break;
            case '\n':
                out.append("\\n");
                break;
            default:
                out.append(QString(c).toUtf8());
        }
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

void appendKey(QByteArray& out, const Key& key, const QString& path) {
    out.append('[').append(path.toUtf8()).append("]\n");
    for (const auto& [name, v] : key.values) appendValue(out, name, v);
    out.append('\n');
    for (const auto& sub : key.subkeys) appendKey(out, *sub, path + u'\\' + sub->name);
}

QByteArray serialize(const Key& tree, const QString& root) {
    QByteArray out("REGEDIT4\n\n");
    if (!tree.values.isEmpty()) {
        out.append('[').append(root.toUtf8()).append("]\n");
        for (const auto& [name, v] : tree.values) appendValue(out, name, v);
        out.append('\n');
    }
    for (const auto& sub : tree.subkeys) appendKey(out, *sub, root + u'\\' + sub->name);
    return out;
}

// ---- files ---------------------------------------------------------------------------

enum class Load { Ok, Damaged, Failed };

Load load(const QString& file, const QString& root, Key& tree) {
    tree = Key{};
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly)) return f.exists() ? Load::Failed : Load::Ok;
    const QByteArray bytes = f.readAll();
    if (f.error() != QFileDevice::NoError) return Load::Failed;
    if (!Parser(bytes, root).parse(tree)) {
        tree = Key{};
        return Load::Damaged;
    }
    return Load::Ok;
}

// Keeps a damaged file for the user to look at, out of the way of the next write.
void putAside(const QString& file) {
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = file + QStringLiteral(".damaged-") + stamp;
    for (int n = 2; QFileInfo::exists(target); ++n)
        target = file + QStringLiteral(".damaged-") + stamp + u'-' + QString::number(n);
    ::rename(QFile::encodeName(file).constData(), QFile::encodeName(target).constData());
}

// An exclusive advisory lock on "<file>.lock", held while the object lives.
class WriteLock {
  public:
    explicit WriteLock(const QString& file) {
        fd_ = ::open(QFile::encodeName(file + QStringLiteral(".lock")).constData(),
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

bool writeAll(int fd, const QByteArray& bytes) {
    const char* p = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, p, size_t(left));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        p += n;
        left -= n;
    }
    return true;
}

// Replaces `file` with `bytes`: readers see the old file or the new one, never a part.
bool replaceFile(const QString& file, const QByteArray& bytes) {
    const QByteArray path = QFile::encodeName(file);
    const QByteArray temp = path + ".tmp";
    const int fd = ::open(temp.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) return false;
    const bool written = writeAll(fd, bytes) && ::fsync(fd) == 0;
    if (::close(fd) != 0 || !written || ::rename(temp.constData(), path.constData()) != 0) {
        ::unlink(temp.constData());
        return false;
    }
    // The rename itself must reach the disk too.
    const int dir = ::open(QFile::encodeName(QFileInfo(file).absolutePath()).constData(),
                           O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
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
    const QString folder = QFileInfo(file).absolutePath();
    if (!QDir().mkpath(folder)) return false;
    WriteLock lock(file);
    if (!lock.held()) return false;
    Key tree;
    switch (load(file, root, tree)) {
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
    return replaceFile(file, serialize(tree, root));
}

}  // namespace

RegistryStore::RegistryStore(QString folder) : folder_(std::move(folder)) {
    if (folder_.isEmpty())
        folder_ = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
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
        const qsizetype i = k->valueIndex(name);
        if (i >= 0)
            k->values[i].second = value;
        else
            k->values.append({name, value});
        return Change::Made;
    });
}

bool RegistryStore::deleteValue(RegRoot root, const QString& key, const QString& name) {
    return modify(fileFor(root), rootName(root), [&](Key& tree) {
        Key* k = findKey(tree, key);
        const qsizetype i = k ? k->valueIndex(name) : -1;
        if (i < 0) return Change::Failed;
        k->values.removeAt(i);
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
