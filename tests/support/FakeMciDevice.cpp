#include "support/FakeMciDevice.h"

namespace cantovel::test {

void FakeMciDevice::setDisc(const QList<qint64>& starts, qint64 leadOut) {
    starts_ = starts;
    leadOut_ = leadOut;
}

void FakeMciDevice::setCommand(const QString& word) {
    commands << word;
    const QString w = word.toUpper();
    if (w == "OPEN") {
        if (canOpen) open = true;
    } else if (w == "CLOSE") {
        open = false;
    } else if (!open) {
        return;
    } else if (w == "PLAY") {
        from = pendingFrom_ >= 0 ? pendingFrom_ : position;
        to = pendingTo_;
        pendingFrom_ = pendingTo_ = -1;
        position = from;
        mode = mciModePlay;
    } else if (w == "STOP") {
        mode = mciModeStop;
    } else if (w == "PAUSE") {
        mode = mciModePause;
    } else if (w == "EJECT") {
        mode = mciModeReady;
    }
}

qint32 FakeMciDevice::TrackPosition() {
    if (!open || track_ < 1 || track_ > starts_.size()) return 0;
    return FramesToMsf(starts_[track_ - 1]);
}

qint32 FakeMciDevice::TrackLength() {
    if (!open || track_ < 1 || track_ > starts_.size()) return 0;
    const qint64 end = track_ < starts_.size() ? starts_[track_] : leadOut_ - 1;
    return FramesToMsf(end - starts_[track_ - 1]);
}

}  // namespace cantovel::test
