#include "shell/MprisPlayer.h"

#include "shell/MprisService.h"

namespace cantovel {

MprisPlayer::MprisPlayer(MprisService* service) : QDBusAbstractAdaptor(service), service_(service) {
    connect(service, &MprisService::seeked, this, &MprisPlayer::Seeked);
}

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
bool MprisPlayer::CanSeek() const {
    return service_->canSeek();
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
void MprisPlayer::Seek(qlonglong Offset) {
    service_->seek(Offset);
}
void MprisPlayer::SetPosition(const QDBusObjectPath& TrackId, qlonglong Position) {
    service_->setPosition(TrackId.path(), Position);
}
void MprisPlayer::OpenUri(const QString& Uri) {
    service_->openUri(Uri);
}

}  // namespace cantovel
