#include "shell/MprisPlayer.h"

#include "shell/MprisService.h"

namespace cantovel {

MprisPlayer::MprisPlayer(MprisService* service)
    : QDBusAbstractAdaptor(service), service_(service) {}

QString MprisPlayer::PlaybackStatus() const {
    return service_->playbackStatus();
}
QString MprisPlayer::LoopStatus() const {
    return service_->loopStatus();
}
void MprisPlayer::setLoopStatus(const QString& status) {
    service_->setLoopStatus(status);
}
bool MprisPlayer::Shuffle() const {
    return service_->shuffle();
}
void MprisPlayer::setShuffle(bool on) {
    service_->setShuffle(on);
}
QVariantMap MprisPlayer::Metadata() const {
    return service_->metadata();
}
double MprisPlayer::Volume() const {
    return service_->volume();
}
void MprisPlayer::setVolume(double value) {
    service_->setVolume(value);
}
qlonglong MprisPlayer::Position() const {
    return service_->position();
}
bool MprisPlayer::CanGoNext() const {
    return service_->canGoNext();
}
bool MprisPlayer::CanGoPrevious() const {
    return service_->canGoPrevious();
}
bool MprisPlayer::CanPlay() const {
    return service_->canPlay();
}
bool MprisPlayer::CanPause() const {
    return service_->canPause();
}

void MprisPlayer::Next() {
    service_->next();
}
void MprisPlayer::Previous() {
    service_->previous();
}
void MprisPlayer::Pause() {
    service_->pause();
}
void MprisPlayer::PlayPause() {
    service_->playPause();
}
void MprisPlayer::Stop() {
    service_->stop();
}
void MprisPlayer::Play() {
    service_->play();
}
void MprisPlayer::Seek(qlonglong) {}
void MprisPlayer::SetPosition(const QDBusObjectPath&, qlonglong) {}
void MprisPlayer::OpenUri(const QString& Uri) {
    service_->openUri(Uri);
}

}  // namespace cantovel
