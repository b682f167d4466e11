#include "platform/mediaplayer/MediaPlayer.h"

#include <QPointer>
#include <algorithm>

namespace cantovel {

void MediaPlayer::setVolume(int volume) {
    volume_ = std::clamp(volume, MinVolume, MaxVolume);
    applyVolume();
}

void MediaPlayer::setBalance(int balance) {
    balance_ = std::clamp(balance, MinBalance, MaxBalance);
    applyBalance();
}

void MediaPlayer::setDisplaySize(int size) {
    displaySize_ = size;
    applyDisplaySize();
}

void MediaPlayer::changePlayState(int state) {
    if (state == playState_) return;
    const int old = playState_;
    playState_ = state;
    emit PlayStateChange(old, state);
}

void MediaPlayer::changeOpenState(int state) {
    if (state == openState_) return;
    const int old = openState_;
    openState_ = state;
    emit OpenStateChange(old, state);
}

void MediaPlayer::reportClosed() {
    QPointer<MediaPlayer> self(this);
    changePlayState(mpClosed);
    if (self) changeOpenState(mpoClosed);
}

void MediaPlayer::reportOpened() {
    playState_ = mpStopped;
    changeOpenState(mpoOpen);
}

int MediaPlayer::reportRefused(const QString& reason) {
    setLastError(ErrorFail, QStringLiteral("The file could not be opened (%1).").arg(reason));
    changeOpenState(mpoClosed);
    return ErrorFail;
}

void MediaPlayer::setLastError(int error, const QString& text) {
    lastError_ = error;
    lastErrorText_ =
        error ? (text.isEmpty() ? QStringLiteral("Unspecified error") : text) : QString();
}

}  // namespace cantovel
