#include "support/FakeFilmPlayer.h"

namespace cantovel::test {

QHash<QString, FakeFilmPlayer::Film>& FakeFilmPlayer::films() {
    static QHash<QString, Film> all;
    return all;
}

void FakeFilmPlayer::install() {
    films().clear();
    TrackedFake::install();
}

FakeFilmPlayer::FakeFilmPlayer() : TrackedFake(this) {
    connect(&ticker_, &Timer::timeout, this, &FakeFilmPlayer::tick);
}

void FakeFilmPlayer::report(const char* state) {
    state_ = QString::fromLatin1(state);
    states << state_;
    emit StateChange(state_, QString());
}

void FakeFilmPlayer::setFilm(const QString& path) {
    calls << QStringLiteral("Film=") + path;
    const bool wasIdle = state_ == QLatin1String(Idle);
    ticker_.setEnabled(false);
    playing_ = started_ = false;
    position = 0;
    film_ = path;
    loaded_ = films().contains(path);
    current_ = films().value(path);
    if (!wasIdle) report(Idle);
}

void FakeFilmPlayer::Play() {
    calls << QStringLiteral("Play");
    if (!loaded_ || playing_) return;
    if (position >= current_.ms) position = 0;
    playing_ = true;
    ticker_.setEnabled(true);
    if (!started_) {
        started_ = true;
        report(PlayDownload);
    }
    report(PlayOut);
}

void FakeFilmPlayer::Stop() {
    calls << QStringLiteral("Stop");
    if (!playing_) return;
    playing_ = false;
    ticker_.setEnabled(false);
    report(Idle);
}

void FakeFilmPlayer::tick() {
    position = std::min(current_.ms, position + 100);
    if (position % 1000 == 0) emit TimeEvent(position, QString());
    if (position < current_.ms) return;
    playing_ = false;
    ticker_.setEnabled(false);
    report(PlayOutComplete);
}

}  // namespace cantovel::test
