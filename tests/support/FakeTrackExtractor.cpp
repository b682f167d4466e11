#include "support/FakeTrackExtractor.h"

#include <QFile>

#include "platform/clock/Timer.h"

namespace cantovel::test {

FakeTrackExtractor::FakeTrackExtractor(QObject* parent)
    : TrackExtractor(parent), TrackedFake(this) {}

FakeTrackExtractor::~FakeTrackExtractor() = default;

void FakeTrackExtractor::SelectDrive(int index) {
    selectedDrive = index;
}

int FakeTrackExtractor::TrackCount() {
    return int(discs.value(selectedDrive).size());
}

qint32 FakeTrackExtractor::TrackLength(int track) {
    return discs.value(selectedDrive).value(track - 1);
}

qint16 FakeTrackExtractor::ExtractTrack(QString& fileName, int track) {
    halt();
    extractions.append({fileName, track});
    if (refusals.contains(track)) return refusals.value(track);
    if (track < 1 || track > TrackCount()) return NoSuchTrack;
    QFile out(fileName);
    if (out.open(QIODevice::WriteOnly)) out.write("track " + QByteArray::number(track));
    running = true;
    step_ = 0;
    QMetaObject::invokeMethod(this, &TrackExtractor::ExtractBegin, Qt::QueuedConnection);
    if (autoRun) {
        timer_ = std::make_unique<Timer>(stepMs);
        connect(timer_.get(), &Timer::timeout, this, [this] {
            if (++step_ < steps)
                progress(1000 * step_ / steps);
            else
                finish();
        });
        timer_->setEnabled(true);
    }
    return Started;
}

void FakeTrackExtractor::halt() {
    running = false;
    if (timer_) {
        timer_->setEnabled(false);
        timer_.release()->deleteLater();
    }
}

void FakeTrackExtractor::Abort() {
    ++aborts;
    halt();
}

qint16 FakeTrackExtractor::Preview(qint16 track, qint16 startSecond, qint16 seconds) {
    previews.append({track, startSecond, seconds});
    return 0;
}

void FakeTrackExtractor::progress(qint32 value) {
    if (running) emit ExtractProgress(value);
}

void FakeTrackExtractor::finish() {
    if (!running) return;
    halt();
    emit ExtractProgress(1000);
    emit ExtractDone();
}

}  // namespace cantovel::test
