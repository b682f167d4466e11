#include "app/FileNames.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <algorithm>
#include <atomic>
#include <cerrno>

namespace cantovel {

namespace {

constexpr char16_t EscapeBase = 0xDC00;

// The length of the valid UTF-8 sequence at `p` (at most `left` bytes), 0 when invalid.
int validSequence(const uchar* p, qsizetype left, char32_t& code) {
    const uchar b = p[0];
    int n;
    char32_t min;
    if (b < 0x80) {
        code = b;
        return 1;
    } else if (b >= 0xC2 && b <= 0xDF) {
        n = 2, code = b & 0x1F, min = 0x80;
    } else if (b >= 0xE0 && b <= 0xEF) {
        n = 3, code = b & 0x0F, min = 0x800;
    } else if (b >= 0xF0 && b <= 0xF4) {
        n = 4, code = b & 0x07, min = 0x10000;
    } else {
        return 0;
    }
    if (left < n) return 0;
    for (int i = 1; i < n; ++i) {
        if ((p[i] & 0xC0) != 0x80) return 0;
        code = (code << 6) | (p[i] & 0x3F);
    }
    if (code < min || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
    return n;
}

bool hasSurrogate(QStringView s) {
    return std::any_of(s.begin(), s.end(), [](QChar c) { return c.isSurrogate(); });
}

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

QByteArray folderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0) return ".";
    return slash == 0 ? QByteArray("/") : path.left(slash);
}

}  // namespace

QString NameFromBytes(QByteArrayView bytes) {
    // Nearly every name is plain UTF-8: Qt's decoder is quick, and a U+FFFD in its
    // result is the only sign that it met something it could not take.
    QString fast = QString::fromUtf8(bytes);
    if (!fast.contains(QChar::ReplacementCharacter)) return fast;
    QString out;
    out.reserve(bytes.size());
    const auto* p = reinterpret_cast<const uchar*>(bytes.data());
    const qsizetype size = bytes.size();
    for (qsizetype i = 0; i < size;) {
        char32_t code = 0;
        const int n = validSequence(p + i, size - i, code);
        if (n == 0) {
            out += QChar(char16_t(EscapeBase + p[i]));
            ++i;
            continue;
        }
        if (code >= 0x10000) {
            out += QChar(QChar::highSurrogate(code));
            out += QChar(QChar::lowSurrogate(code));
        } else {
            out += QChar(char16_t(code));
        }
        i += n;
    }
    return out;
}

QByteArray NameToBytes(QStringView name) {
    if (!hasSurrogate(name)) return name.toUtf8();
    QByteArray out;
    out.reserve(name.size() * 3);
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t c = name[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < name.size() &&
            QChar::isLowSurrogate(name[i + 1].unicode())) {
            out += name.sliced(i, 2).toUtf8();
            ++i;
        } else if (c >= EscapeBase + 0x80 && c <= EscapeBase + 0xFF) {
            out += char(c - EscapeBase);
        } else {
            out += name.sliced(i, 1).toUtf8();
        }
    }
    return out;
}

QStringList ArgumentsFromArgv(int argc, const char* const* argv) {
    QStringList out;
    for (int i = 0; i < argc; ++i) out << NameFromBytes(argv[i]);
    return out;
}

bool OpenByName(QFile& file, const QString& name, QIODevice::OpenMode mode) {
    int flags = O_CLOEXEC;
    const bool reads = mode.testFlag(QIODevice::ReadOnly);
    const bool writes = mode.testFlag(QIODevice::WriteOnly) || mode.testFlag(QIODevice::Append);
    if (!reads && !writes) return false;
    flags |= reads && writes ? O_RDWR : writes ? O_WRONLY : O_RDONLY;
    if (writes) {
        if (!mode.testFlag(QIODevice::ExistingOnly)) flags |= O_CREAT;
        if (mode.testFlag(QIODevice::NewOnly)) flags |= O_EXCL;
        if (mode.testFlag(QIODevice::Append))
            flags |= O_APPEND;
        else if (mode.testFlag(QIODevice::Truncate) || !reads)
            flags |= O_TRUNC;
    }
    int fd;
    do fd = ::open(NameToBytes(name).constData(), flags, 0666);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) return false;
    if (!file.open(fd, mode, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return false;
    }
    return true;
}

NameKind KindOfName(const QString& name) {
    struct stat st {};
    if (name.isEmpty() || ::stat(NameToBytes(name).constData(), &st) != 0) return NameKind::Missing;
    if (S_ISREG(st.st_mode)) return NameKind::File;
    if (S_ISDIR(st.st_mode)) return NameKind::Folder;
    return NameKind::Other;
}

qint64 SizeOfName(const QString& name) {
    struct stat st {};
    if (name.isEmpty() || ::stat(NameToBytes(name).constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return -1;
    return qint64(st.st_size);
}

bool MakeFolderByName(const QString& name) {
    const QByteArray path = NameToBytes(name);
    for (qsizetype slash = path.indexOf('/', 1);; slash = path.indexOf('/', slash + 1)) {
        const QByteArray part = slash < 0 ? path : path.left(slash);
        if (!part.isEmpty() && ::mkdir(part.constData(), 0777) != 0 && errno != EEXIST)
            return false;
        if (slash < 0) break;
    }
    return KindOfName(name) == NameKind::Folder;
}

QStringList FilesInFolder(const QString& folder) {
    QStringList out;
    const QByteArray path = NameToBytes(folder);
    DIR* dir = ::opendir(path.constData());
    if (!dir) return out;
    const QByteArray prefix = path.endsWith('/') ? path : path + '/';
    while (const dirent* entry = ::readdir(dir)) {
        const QByteArray name(entry->d_name);
        if (name == "." || name == "..") continue;
        struct stat st {};
        if (::stat((prefix + name).constData(), &st) == 0 && S_ISREG(st.st_mode))
            out << NameFromBytes(name);
    }
    ::closedir(dir);
    std::sort(out.begin(), out.end());
    return out;
}

QString LinkTargetOf(const QString& name) {
    QByteArray path = NameToBytes(name);
    // As the kernel does, a chain longer than 40 links is taken as a loop.
    for (int hop = 0; hop < 40; ++hop) {
        struct stat st {};
        if (::lstat(path.constData(), &st) != 0 || !S_ISLNK(st.st_mode)) break;
        QByteArray target(qsizetype(st.st_size > 0 ? st.st_size : 4096), Qt::Uninitialized);
        const ssize_t n = ::readlink(path.constData(), target.data(), size_t(target.size()));
        if (n <= 0) break;
        target.truncate(n);
        path = target.startsWith('/') ? target : folderOf(path) + '/' + target;
    }
    return NameFromBytes(path);
}

bool ReplaceFileByName(const QString& name, const QByteArray& bytes, bool sync, int newFileMode) {
    const QByteArray path = NameToBytes(LinkTargetOf(name));
    // A name of our own beside the file: the same file system, so the rename is atomic.
    static std::atomic<unsigned> counter{0};
    int fd = -1;
    QByteArray temp;
    for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
        temp =
            path + ".tmp-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(counter++);
        fd = ::open(temp.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode_t(newFileMode));
        if (fd < 0 && errno != EEXIST) return false;
    }
    if (fd < 0) return false;
    // The new contents keep the old file's permissions.
    struct stat old {};
    if (::stat(path.constData(), &old) == 0) ::fchmod(fd, old.st_mode & 07777);
    const bool written = writeAll(fd, bytes) && (!sync || ::fsync(fd) == 0);
    if (::close(fd) != 0 || !written || ::rename(temp.constData(), path.constData()) != 0) {
        ::unlink(temp.constData());
        return false;
    }
    if (sync) {
        // The rename itself must reach the disk too.
        const int dir = ::open(folderOf(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (dir >= 0) {
            ::fsync(dir);
            ::close(dir);
        }
    }
    return true;
}

}  // namespace cantovel
