#include "support/FakeMediaPlayer.h"

#include <QPointer>
#include <algorithm>

#include "platform/Components.h"
#include "platform/clock/Clock.h"

namespace cantovel::test {

FakeMediaPlayer::Media& FakeMediaPlayer::media() {
    static Media m;
    return m;
}

void FakeMediaPlayer::install() {
    media() = Media{};
    Components::provideFactory<MediaPlayer>([] { return std::make_unique<FakeMediaPlayer>(); });
}

FakeMediaPlayer::FakeMediaPlayer(QObject* parent) : MediaPlayer(parent), ticker_(100) {
    connect(&ticker_, &Timer::timeout, this, &FakeMediaPlayer::tick);
}

int FakeMediaPlayer::setFileName(const QString& name) {
    calls << QStringLiteral("FileName=") + name;
    setLastError(0);
    QPointer<FakeMediaPlayer> self(this);
    ticker_.setEnabled(false);
    reportClosed();
    if (!self) return 0;
    fileName_ = name;
    length_ = position_ = 0;
    picture_ = {};
    if (name.isEmpty()) return 0;

    reportOpening();
    if (!self) return 0;
    const auto known = media().lengths.constFind(name);
    if (known == media().lengths.constEnd()) {
        fileName_.clear();
        return reportRefused(QStringLiteral("unrecognized file format"));
    }
    length_ = *known;
    picture_ = media().pictures.value(name);
    reportOpened();
    fit();
    return 0;
}

void FakeMediaPlayer::Play() {
    calls << QStringLiteral("Play");
    if (OpenState() != mpoOpen || PlayState() == mpPlaying) return;
    if (position_ >= length_) position_ = 0;
    lastMs_ = Clock::get().msecs();
    ticker_.setEnabled(true);
    changePlayState(mpPlaying);
}

void FakeMediaPlayer::Pause() {
    calls << QStringLiteral("Pause");
    if (PlayState() != mpPlaying) return;
    tick();
    if (PlayState() != mpPlaying) return;  // the tick found the end
    ticker_.setEnabled(false);
    changePlayState(mpPaused);
}

void FakeMediaPlayer::Stop() {
    calls << QStringLiteral("Stop");
    if (OpenState() != mpoOpen) return;
    ticker_.setEnabled(false);
    position_ = 0;
    changePlayState(mpStopped);
}

void FakeMediaPlayer::setCurrentPosition(double seconds) {
    calls << QStringLiteral("CurrentPosition=%1").arg(seconds);
    if (OpenState() != mpoOpen) return;
    position_ = std::clamp(seconds, 0.0, length_);
    lastMs_ = Clock::get().msecs();
}

void FakeMediaPlayer::setVideoWidget(QWidget* widget) {
    videoWidget_ = widget;
    fit();
}

void FakeMediaPlayer::applyDisplaySize() {
    fit();
}

void FakeMediaPlayer::fit() {
    const QHash<int, double> scales{{mpDefaultSize, 1}, {mpHalfSize, 0.5}, {mpDoubleSize, 2}};
    if (videoWidget_ && !picture_.isEmpty() && scales.contains(DisplaySize()))
        videoWidget_->resize(picture_ * scales[DisplaySize()]);
}

void FakeMediaPlayer::playToEnd() {
    position_ = length_;
    if (PlayState() == mpPlaying) tick();
}

void FakeMediaPlayer::tick() {
    const qint64 now = Clock::get().msecs();
    position_ = std::min(length_, position_ + (now - lastMs_) / 1000.0);
    lastMs_ = now;
    if (position_ < length_) return;
    ticker_.setEnabled(false);
    changePlayState(mpStopped);
}

}  // namespace cantovel::test
