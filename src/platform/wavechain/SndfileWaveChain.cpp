#include "platform/wavechain/SndfileWaveChain.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>

#include "app/FileNames.h"
#include "platform/wavechain/AudioSource.h"
#include "platform/wavechain/ConvertingReader.h"
#include "platform/wavechain/SoundSink.h"
#include "platform/wavechain/StagedOutput.h"

namespace cantovel {

namespace {

bool sameFile(const QString& a, const QString& b) {
    struct stat sa, sb;
    if (::stat(NameToBytes(a).constData(), &sa) != 0 ||
        ::stat(NameToBytes(b).constData(), &sb) != 0)
        return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

}  // namespace

SndfileWaveChain::SndfileWaveChain(QObject* parent) : WaveChain(parent) {}

SndfileWaveChain::~SndfileWaveChain() {
    Stop();
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

    // Every destination is written aside and put in place when complete, so an older file
    // of its name, or the source itself when it is its own destination, is never left cut
    // short. A folder that takes no file is a failed write, told as one.
    const QString destination = DstFileName();
    auto staged = std::make_shared<StagedOutput>(destination);
    auto dst = std::make_shared<SoundSink>();
    const bool opened = staged->create() && dst->open(staged->path(), target.sndfileFormat(),
                                                      target.sampleRate, target.channels);
    if (!opened) staged->drop();

    staged_ = staged;
    keepStopped_ = !sameFile(SrcFileName(), destination);
    position_ = 0;
    length_ = source->frames();
    state_ = StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStarted, Qt::QueuedConnection);

    job_.start([this, source, dst, target, staged, opened](const BackgroundJob::Run& run) {
        const auto fail = [&] {
            dst->close();
            staged->fail();
            run.report([this] { failWrite(); });
        };
        ConvertingReader reader(*source, target.channels, target.sampleRate);
        if (!opened || !reader.isValid()) return fail();
        while (reader.next()) {
            if (run.stopRequested()) return;
            if (!dst->write(reader.data(), reader.frames())) return fail();
            position_ = reader.sourcePosition();
        }
        position_ = reader.sourcePosition();
        // The header's lengths are written on closing; a failure there is a failed write.
        if (!dst->close()) return fail();
        if (!staged->keep()) {
            run.report([this] { failWrite(); });
            return;
        }
        run.report([this] { emit TriggerDataEnd(); });
    });
}

void SndfileWaveChain::failWrite() {
    state_ |= StateWriteFailed;
    emit DstFileError();
}

void SndfileWaveChain::Stop() {
    job_.stop();
    // A stopped run's output stays as far as it was written, but a source converted onto
    // itself stays whole.
    if (staged_) {
        if (keepStopped_)
            staged_->keep();
        else
            staged_->drop();
    }
    staged_.reset();
    if (!(state_ & StateRunning)) return;
    state_ &= ~StateRunning;
    QMetaObject::invokeMethod(this, &WaveChain::TriggerStopped, Qt::QueuedConnection);
}

}  // namespace cantovel
