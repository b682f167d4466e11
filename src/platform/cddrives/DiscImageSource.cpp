#include "platform/cddrives/DiscImageSource.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>
#include <atomic>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "app/FileNames.h"
#include "platform/cdaudio/CdioQuiet.h"

namespace cantovel {

QString RuntimeFolder() {
    QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (runtime.isEmpty())
        runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime + QStringLiteral("/cantovel");
}

namespace {

// The FILE line comes before the tracks: the head of a CUE sheet holds it.
constexpr qint64 kCueHeadBytes = 64 * 1024;

QByteArray realPath(const QByteArray& name) {
    char buffer[PATH_MAX];
    return ::realpath(name.constData(), buffer) ? QByteArray(buffer) : QByteArray();
}

bool sameFile(const QByteArray& a, const QByteArray& b) {
    struct stat sa {};
    struct stat sb {};
    return ::stat(a.constData(), &sa) == 0 && ::stat(b.constData(), &sb) == 0 &&
           sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

bool isFile(const QByteArray& name) {
    struct stat s {};
    return ::stat(name.constData(), &s) == 0 && S_ISREG(s.st_mode);
}

// The BIN libcdio reads for a CUE: the name's "cue" or "CUE" ending turned into "bin" or
// "BIN"; none for any other ending.
QByteArray libcdioBin(const QByteArray& cue) {
    if (cue.endsWith("cue")) return cue.chopped(3) + "bin";
    if (cue.endsWith("CUE")) return cue.chopped(3) + "BIN";
    return {};
}

// The file the first FILE line names, as written: quoted, or the words before the type.
QByteArray fileLineName(const QByteArray& cue) {
    FILE* f = std::fopen(cue.constData(), "rb");
    if (!f) return {};
    QByteArray text(kCueHeadBytes, '\0');
    text.resize(qsizetype(std::fread(text.data(), 1, size_t(text.size()), f)));
    std::fclose(f);
    for (QByteArray line : text.split('\n')) {
        line = line.trimmed();
        if (!line.toUpper().startsWith("FILE") || line.size() < 5 || !std::isspace(uchar(line[4])))
            continue;
        line = line.mid(5).trimmed();
        if (line.startsWith('"')) {
            const qsizetype end = line.indexOf('"', 1);
            return end > 0 ? line.mid(1, end - 1) : QByteArray();
        }
        const qsizetype type = line.lastIndexOf(' ');
        return type > 0 ? line.left(type).trimmed() : line;
    }
    return {};
}

// Makes `link` point at `target`, replacing what stood there in one step so that another
// thread opening the same image meanwhile sees either link whole.
bool pointLink(const QByteArray& link, const QByteArray& target) {
    char buffer[PATH_MAX];
    const ssize_t n = ::readlink(link.constData(), buffer, sizeof buffer);
    if (n >= 0 && QByteArray(buffer, n) == target) return true;
    static std::atomic<int> serial{0};
    const QByteArray temp =
        link + '.' + QByteArray::number(::getpid()) + '.' + QByteArray::number(serial.fetch_add(1));
    if (::symlink(target.constData(), temp.constData()) != 0) return false;
    if (::rename(temp.constData(), link.constData()) == 0) return true;
    ::unlink(temp.constData());
    return false;
}

// What to hand libcdio for `device`: the device or image itself, or, for a CUE whose FILE
// line names an existing BIN libcdio would not find, a link to the CUE in a folder of
// ours beside a link to that BIN under the name libcdio looks for.
QByteArray discSource(const QString& device) {
    const QByteArray bytes = NameToBytes(device);
    if (!bytes.toLower().endsWith(".cue") || !isFile(bytes)) return bytes;
    QByteArray named = fileLineName(bytes);
    if (named.isEmpty()) return bytes;
    if (!named.startsWith('/')) {
        const qsizetype slash = bytes.lastIndexOf('/');
        named.prepend(slash >= 0 ? bytes.left(slash + 1) : QByteArray());
    }
    // A FILE line naming nothing leaves libcdio to the BIN of the CUE's name, if any.
    if (!isFile(named)) return bytes;
    const QByteArray own = libcdioBin(bytes);
    if (!own.isEmpty() && sameFile(own, named)) return bytes;

    const QByteArray cue = realPath(bytes), bin = realPath(named);
    if (cue.isEmpty() || bin.isEmpty()) return bytes;
    const QString folder =
        RuntimeFolder() + QStringLiteral("/images/") +
        QString::fromLatin1(
            QCryptographicHash::hash(cue, QCryptographicHash::Sha1).toHex().left(16));
    if (!QDir().mkpath(folder)) return bytes;
    ::chmod(NameToBytes(folder).constData(), 0700);
    const QByteArray base = NameToBytes(folder) + "/disc.";
    if (!pointLink(base + "bin", bin) || !pointLink(base + "cue", cue)) return bytes;
    return base + "cue";
}

}  // namespace

CdIo_t* openDisc(const QString& device) {
    quietCdio();
    return cdio_open(discSource(device).constData(), DRIVER_UNKNOWN);
}

}  // namespace cantovel
