#pragma once
// The video windows on the player core's fixture: fake players that size their picture as
// the real one does, virtual time.

#include <QMenu>

#include "../player/PlayerTest.h"
#include "video/WindowMetrics.h"

namespace cantovel::test {

class VideoTest : public PlayerTest {
  protected:
    // A film the fake players open: `seconds` long with a picture of `size`.
    QString film(const QString& name, double seconds = 12, QSize size = QSize(320, 240)) {
        const QString path = media(name, seconds);
        FakeMediaPlayer::setPicture(path, size);
        return path;
    }
    FakeMediaPlayer& playerMP() { return *static_cast<FakeMediaPlayer*>(video()->MP()); }
    // Opens a film from the main window and lets the window's wait for it run out.
    frmVideoPlayer& openFilm(const QString& path) {
        openByDialog(path);
        clock().advance(300);
        return *video();
    }
};

}  // namespace cantovel::test
