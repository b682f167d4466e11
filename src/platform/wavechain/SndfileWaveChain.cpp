#include "platform/wavechain/SndfileWaveChain.h"

#include <sndfile.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/wavechain/AudioSource.h"
#include "platform/wavechain/ConvertingReader.h"

namespace cantovel {

namespace {

bool sameFile(const QString& a, const QString& b) {
    struct stat sa, sb;
    if (::stat(QFile::encodeName(a).constData(), &sa) != 0 ||
        ::stat(QFile::encodeName(b).constData(), &sb) != 0)
        return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

bool isDiskFull(int error) {
    return error == ENOSPC || error == EFBIG || error == EDQUOT;
}

// The destination, closed explicitly when its last header write matters.
struct Destination {
    explicit Destination(SNDFILE* f) : file(f) {}
    ~Destination() {
        if (file) sf_close(file);
    }
    bool close() { return sf_close(std::exchange(file, nullptr)) == 0; }
    SNDFILE* file;
};

}  // namespace

SndfileWaveChain::SndfileWaveChain(QObject* parent) : WaveChain(parent) {}

SndfileWaveChain::~SndfileWaveChain() {
    job_.stop();
    if (!aside_.isEmpty()) QFile::remove(aside_);
}

bool SndfileWaveChain::PrepareOutput(const QString& name) {
    return QDir().mkpath(QFileInfo(name).absolutePath());
}

void SndfileWaveChain::Start() {
    clearError();
    if (state_ & StateRunning) return;

    auto source = std::make_shared<AudioSource>();
    if (!source->open(SrcFileName())) {
        raise(
            QStringLiteral("The source file can't be read as sound: %1").arg(source->errorText()));
        return;
    }
    const WaveFormat target = TargetFormat();
    if (!target.isWritable()) {
        raise(QStringLiteral("A WAV file can't hold %1.").arg(target.description()));
        return;
    }

    const QString destination = DstFileName();
    QString writeTo = destination;
    if (sameFile(SrcFileName(), destination)) {
        const QFileInfo info(destination);
        writeTo =
            info.absoluteDir().filePath(QStringLiteral(".%1.converting").arg(info.fileName()));
    }
    SF_INFO info;
    std::memset(&info, 0, sizeof info);
    info.samplerate = target.sampleRate;
    info.channels = target.channels;
    info.format = target.sndfileFormat();
    errno = 0;
    SNDFILE* out = sf_open(QFile::encodeName(writeTo).constData(), SFM_WRITE, &info);
    const int openError = errno;
    if (!out && !isDiskFull(openError)) {
        raise(QStringLiteral("The destination file can't be created: %1")
                  .arg(QString::fromLocal8Bit(sf_strerror(nullptr))));
        return;
    }
    auto dst = std::make_shared<Destination>(out);
    if (out) {
        // Converted sound may overshoot full scale a little; it clips rather than wraps.
        sf_command(out, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    }

    aside_ = writeTo == destination ? QString() : writeTo;
    position_ = 0;
    length_ = source->frames();
    state_ = StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStarted, Qt::QueuedConnection);

    const QString aside = aside_;
    job_.start([this, source, dst, target, aside, destination](const BackgroundJob::Run& run) {
        if (!dst->file) {
            run.report([this] { failWrite(); });
            return;
        }
        ConvertingReader reader(*source, target.channels, target.sampleRate);
        if (!reader.isValid()) {
            run.report([this] { failWrite(); });
            return;
        }
        while (reader.next()) {
            if (run.stopRequested()) return;
            if (sf_writef_float(dst->file, reader.data(), reader.frames()) != reader.frames()) {
                run.report([this] { failWrite(); });
                return;
            }
            position_ = reader.sourcePosition();
        }
        position_ = reader.sourcePosition();
        // The header's lengths are written on closing; a failure there is a failed write.
        if (!dst->close()) {
            run.report([this] { failWrite(); });
            return;
        }
        if (!aside.isEmpty()) {
            const QByteArray from = QFile::encodeName(aside), to = QFile::encodeName(destination);
            if (std::rename(from.constData(), to.constData()) != 0) {
                run.report([this] { failWrite(); });
                return;
            }
        }
        run.report([this] {
            aside_.clear();
            emit TriggerDataEnd();
        });
    });
}

void SndfileWaveChain::failWrite() {
    state_ |= StateWriteFailed;
    emit DstFileError();
}

void SndfileWaveChain::Stop() {
    job_.stop();
    // Sound written aside for the source's own place is dropped: the source stays whole.
    if (!aside_.isEmpty()) QFile::remove(aside_);
    aside_.clear();
    if (!(state_ & StateRunning)) return;
    state_ &= ~StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStopped, Qt::QueuedConnection);
}

}  // namespace cantovel
