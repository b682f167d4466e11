#include "platform/wavechain/SndfileWaveChain.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <memory>

#include "platform/wavechain/AudioSource.h"
#include "platform/wavechain/ConvertingReader.h"
#include "platform/wavechain/SoundSink.h"

namespace cantovel {

namespace {

bool sameFile(const QString& a, const QString& b) {
    struct stat sa, sb;
    if (::stat(QFile::encodeName(a).constData(), &sa) != 0 ||
        ::stat(QFile::encodeName(b).constData(), &sb) != 0)
        return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

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
    auto dst = std::make_shared<SoundSink>();
    if (!dst->open(writeTo, target.sndfileFormat(), target.sampleRate, target.channels) &&
        !isDiskFullError(dst->openErrno())) {
        raise(QStringLiteral("The destination file can't be created: %1").arg(dst->errorText()));
        return;
    }

    aside_ = writeTo == destination ? QString() : writeTo;
    position_ = 0;
    length_ = source->frames();
    state_ = StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStarted, Qt::QueuedConnection);

    const QString aside = aside_;
    job_.start([this, source, dst, target, aside, destination](const BackgroundJob::Run& run) {
        ConvertingReader reader(*source, target.channels, target.sampleRate);
        if (!reader.isValid()) {
            run.report([this] { failWrite(); });
            return;
        }
        while (reader.next()) {
            if (run.stopRequested()) return;
            if (!dst->write(reader.data(), reader.frames())) {
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
