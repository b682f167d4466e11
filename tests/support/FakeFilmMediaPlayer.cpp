#include "support/FakeFilmMediaPlayer.h"

#include "platform/Components.h"

namespace cantovel::test {

void FakeFilmMediaPlayer::install() {
    FakeMediaPlayer::install();
    Components::provideFactory<MediaPlayer>([] { return std::make_unique<FakeFilmMediaPlayer>(); });
}

int FakeFilmMediaPlayer::setFileName(const QString& name) {
    const int result = FakeMediaPlayer::setFileName(name);
    fit();
    return result;
}

void FakeFilmMediaPlayer::setVideoWidget(QWidget* widget) {
    FakeMediaPlayer::setVideoWidget(widget);
    widget_ = widget;
    fit();
}

void FakeFilmMediaPlayer::applyDisplaySize() {
    FakeMediaPlayer::applyDisplaySize();
    fit();
}

void FakeFilmMediaPlayer::fit() {
    if (!widget_ || ImageSourceWidth() <= 0 || ImageSourceHeight() <= 0) return;
    double scale = 0;
    switch (DisplaySize()) {
        case mpDefaultSize:
            scale = 1;
            break;
        case mpHalfSize:
            scale = 0.5;
            break;
        case mpDoubleSize:
            scale = 2;
            break;
        default:
            return;
    }
    widget_->resize(int(ImageSourceWidth() * scale), int(ImageSourceHeight() * scale));
}

}  // namespace cantovel::test
