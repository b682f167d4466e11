#include "platform/wavechain/StagedOutput.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "app/FileNames.h"

namespace cantovel {

QString systemErrorText(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

StagedOutput::StagedOutput(const QString& finalPath) : final_(finalPath) {}

StagedOutput::~StagedOutput() {
    drop();
}

bool StagedOutput::create() {
    const QFileInfo info(final_);
    // Hidden, and in the same folder, so the final rename never crosses file systems.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString name =
            QStringLiteral(".%1.%2.part")
                .arg(info.fileName())
                .arg(QRandomGenerator::global()->generate() & 0xffffff, 6, 16, QChar(u'0'));
        const QString candidate = info.absoluteDir().filePath(name);
        const int fd = ::open(NameToBytes(candidate).constData(),
                              O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            ::close(fd);
            path_ = candidate;
            settled_ = false;
            return true;
        }
        if (errno != EEXIST) break;
    }
    error_ = errno;
    return false;
}

bool StagedOutput::keep() {
    if (settled_.exchange(true)) return true;
    const QByteArray from = NameToBytes(path_), to = NameToBytes(final_);
    struct stat older;
    if (::stat(to.constData(), &older) == 0) {
        // A device or folder of that name is not ours to replace.
        if (!S_ISREG(older.st_mode)) {
            error_ = S_ISDIR(older.st_mode) ? EISDIR : EEXIST;
            ::unlink(from.constData());
            return false;
        }
        ::chmod(from.constData(), older.st_mode & 07777);
    }
    if (std::rename(from.constData(), to.constData()) == 0) return true;
    error_ = errno;
    ::unlink(from.constData());
    return false;
}

void StagedOutput::drop() {
    if (settled_.exchange(true)) return;
    ::unlink(NameToBytes(path_).constData());
}

void StagedOutput::fail() {
    struct stat older;
    if (::stat(NameToBytes(final_).constData(), &older) == 0)
        drop();
    else
        keep();
}

QString StagedOutput::errorText() const {
    return systemErrorText(error_);
}

}  // namespace cantovel
