#pragma once
// The single-file video window (frmVideoPlayer) as the player sees it: the main window
// hands it a file and drives its player `MP`.

#include <QString>

namespace cantovel {

class MediaPlayer;

class VideoPlayerWindow {
  public:
    virtual ~VideoPlayerWindow() = default;

    // The window's public entry: the file about to be played in it.
    virtual void SetVideoFile(const QString& path) = 0;
    // The window's player; the main window sets its file name, plays, pauses, stops and
    // seeks it, and reads its position.
    virtual MediaPlayer* MP() = 0;
};

}  // namespace cantovel
