#include "support/FakeCDReader.h"

#include <QFile>
#include <QMetaObject>
#include <algorithm>

#include "platform/clock/Clock.h"
#include "platform/clock/Timer.h"

namespace cantovel::test {

FakeCDReader::Disc& FakeCDReader::disc() {
    static Disc d;
    return d;
}

void FakeCDReader::setTracks(std::initializer_list<int> seconds) {
    disc().tracks.clear();
    qint64 start = 150;
    int number = 1;
    for (int s : seconds) {
        CDTrack t;
        t.Number = number++;
        t.StartPosition = CDReader::FromFrames(start);
        t.Length = CDReader::FromFrames(qint64(s) * 75);
        disc().tracks.append(t);
        start += qint64(s) * 75;
    }
}

void FakeCDReader::install() {
    disc() = Disc{};
    TrackedFake::install();
}

FakeCDReader::FakeCDReader(QObject* parent) : CDReader(parent), TrackedFake(this) {}

FakeCDReader::~FakeCDReader() = default;

void FakeCDReader::Open() {
    calls << QStringLiteral("Open");
    openedDevices << DeviceID();
    clearError();
    if (!disc().openError.isEmpty()) {
        raise(disc().openError);
        return;
    }
    if (!opened_) openedAt_ = Clock::get().msecs();
    opened_ = true;
}

bool FakeCDReader::DiscPresent() const {
    return opened_ && !disc().removed && !disc().doorOpen && disc().readyAfterMs &&
           Clock::get().msecs() - openedAt_ >= *disc().readyAfterMs;
}

qint64 FakeCDReader::positionFrames() const {
    if (!playing_) return fromFrames_;
    return fromFrames_ + (Clock::get().msecs() - startedAt_) * 75 / 1000;
}

quint32 FakeCDReader::Position() const {
    return CDReader::FromFrames(positionFrames());
}

void FakeCDReader::setPositionFrames(qint64 frames) {
    fromFrames_ = frames;
    startedAt_ = Clock::get().msecs();
}

void FakeCDReader::PlayAudioTrack(int index) {
    calls << QStringLiteral("PlayAudioTrack=%1").arg(index);
    if (index < 0 || index >= disc().tracks.size()) return;
    setPositionFrames(CDReader::ToFrames(disc().tracks[index].StartPosition));
    playing_ = true;
}

void FakeCDReader::PlayAudioRange(quint32 start, quint32 length) {
    calls << QStringLiteral("PlayAudioRange=%1+%2")
                 .arg(CDReader::ToFrames(start))
                 .arg(CDReader::ToFrames(length));
    setPositionFrames(CDReader::ToFrames(start));
    playing_ = true;
}

void FakeCDReader::StopAudio() {
    calls << QStringLiteral("StopAudio");
    fromFrames_ = positionFrames();
    playing_ = false;
}

void FakeCDReader::PauseAudio() {
    calls << QStringLiteral("PauseAudio");
    fromFrames_ = positionFrames();
    playing_ = false;
}

void FakeCDReader::Close() {
    calls << QStringLiteral("Close");
    playing_ = false;
    opened_ = false;
}

int FakeCDReader::DriveState() const {
    if (!opened_) return dsNone;
    if (disc().doorOpen) return dsDoorOpen;
    if (!DiscPresent()) return dsNoDisc;
    return playing_ ? dsPlaying : dsReady;
}

void FakeCDReader::Door(bool close) {
    calls << QStringLiteral("Door=%1").arg(close ? 1 : 0);
    disc().doorOpen = !close;
}

void FakeCDReader::CopyTrack(int index, const QString& fileName) {
    calls << QStringLiteral("CopyTrack=%1:%2").arg(index).arg(fileName);
    const QList<CDTrack> tracks = Tracks();
    if (!canCopy(index, copying_)) return;
    // The file is there from the start, as the real reader writes straight to it.
    QFile out(fileName);
    if (out.open(QIODevice::WriteOnly)) out.write(QByteArray::number(index));
    copying_ = true;
    copyStarted_ = false;
    copyStart_ = copyPosition_ = CDReader::ToFrames(tracks[index].StartPosition);
    copyEnd_ = copyStart_ + CDReader::ToFrames(tracks[index].Length);
    copyBegunAt_ = Clock::get().msecs();
    copyTimer_ = std::make_unique<Timer>(10);
    QObject::connect(copyTimer_.get(), &Timer::timeout, this, &FakeCDReader::copyTick);
    copyTimer_->setEnabled(true);
}

void FakeCDReader::copyTick() {
    if (!copying_) return;
    const qint64 elapsed = Clock::get().msecs() - copyBegunAt_;
    if (elapsed < disc().copyStartMs) return;
    if (!copyStarted_) {
        copyStarted_ = true;
        emit CopyStarted();
        return;
    }
    const qint64 done = std::min(copyEnd_ - copyStart_,
                                 (elapsed - disc().copyStartMs) * disc().copyFramesPer100Ms / 100);
    if (disc().failReadAt && done >= *disc().failReadAt) {
        copyPosition_ = copyStart_ + *disc().failReadAt;
        emit CopyError();
        finishCopy();
        return;
    }
    copyPosition_ = copyStart_ + done;
    if (copyPosition_ >= copyEnd_) finishCopy();
}

void FakeCDReader::finishCopy() {
    copying_ = false;
    if (copyTimer_) {
        // The timer may be the one whose tick is running now.
        copyTimer_->setEnabled(false);
        copyTimer_.release()->deleteLater();
    }
    emit CopyFinished();
}

void FakeCDReader::StopCopy() {
    calls << QStringLiteral("StopCopy");
    if (!copying_) return;
    if (copyTimer_) copyTimer_->setEnabled(false);
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (copying_) finishCopy();
        },
        Qt::QueuedConnection);
}

}  // namespace cantovel::test
