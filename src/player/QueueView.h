#pragma once
// The playlist video view (frmVideoPlaylistView) as the player sees it. While a queue
// runs every entry, audio and video, plays in its player `AM`; the window stays hidden
// for audio and shows for video.
//
// The main window sets AM's file name and starts it; the window's own load applies its
// settings. What the window owes the main window:
//  - AM's OpenStateChange first runs frmMain::MediaOpened(AM), then the window's own
//    steps (its full-screen setting).
//  - AM's PlayStateChange runs frmMain::AM_PlayStateChange(old, new), which sees the end
//    of an entry.
//  - Its query-unload ends the queue: PlaylistRunning False, AM stopped, PlayStopped.

namespace cantovel {

class MediaPlayer;

class QueueView {
  public:
    virtual ~QueueView() = default;

    virtual MediaPlayer* AM() = 0;
};

}  // namespace cantovel
