#pragma once
// The video windows on the player core's fixture: the real windows, fake players that
// size their picture as the real one does, virtual time.

#include <QMenu>

#include "../player/PlayerTest.h"
#include "app/AppState.h"
#include "app/Settings.h"
#include "platform/clock/QtClock.h"
#include "platform/filmplayer/MpvFilmPlayer.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "support/FakeFilmMediaPlayer.h"
#include "support/FakeFilmPlayer.h"
#include "video/WindowMetrics.h"
#include "video/frmVideoPlayer.h"
#include "video/frmVivoPlayer.h"

namespace cantovel::test {

class VideoTest : public PlayerTest {
  protected:
    void SetUp() override {
        PlayerTest::SetUp();
        // The main window here is never loaded, and its load is what clears this.
        AppClosing = VFalse;
    }
    void installPlayers() override {
        FakeFilmMediaPlayer::install();
        Components::provideFactory<VideoPlayerWindow>(
            [] { return std::make_unique<frmVideoPlayer>(); });
        FakeFilmPlayer::install();
        Components::provideFactory<VivoPlayerWindow>(
            [] { return std::make_unique<frmVivoPlayer>(); });
    }

    // The real players on libmpv and the real film windows, in real time, with the outputs
    // the environment names (the desktop tests show real pictures).
    static void installMpvPlayers() {
        Components::provideService<Clock>(std::make_shared<QtClock>());
        Components::provideFactory<MediaPlayer>([] { return std::make_unique<MpvMediaPlayer>(); });
        Components::provideFactory<FilmPlayer>([] { return std::make_unique<MpvFilmPlayer>(); });
        Components::provideFactory<VideoPlayerWindow>(
            [] { return std::make_unique<frmVideoPlayer>(); });
        Components::provideFactory<VivoPlayerWindow>(
            [] { return std::make_unique<frmVivoPlayer>(); });
    }
    // A film the fake players open: `seconds` long with a picture of `size`.
    QString film(const QString& name, double seconds = 12, QSize size = QSize(320, 240)) {
        const QString path = media(name, seconds);
        FakeMediaPlayer::setPicture(path, size);
        return path;
    }
    frmVideoPlayer* player() { return Forms::find<frmVideoPlayer>(); }
    FakeMediaPlayer& playerMP() { return *static_cast<FakeMediaPlayer*>(player()->MP()); }
    // Opens a film from the main window and lets the window's wait for it run out.
    frmVideoPlayer& openFilm(const QString& path) {
        openByDialog(path);
        clock().advance(300);
        return *player();
    }
    static double twips(const QWidget* w) { return TwipsPerPixel(w); }
};

}  // namespace cantovel::test
