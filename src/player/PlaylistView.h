#pragma once
// The playlist window (frmPlaylist) as the player sees it: its list `lstPlayList` shows
// the file names of the rows of frmMain.List1, and is filled together with it.

#include <QString>

namespace cantovel {

class PlaylistView {
  public:
    virtual ~PlaylistView() = default;

    virtual void lstPlayListClear() = 0;
    virtual void lstPlayListAddItem(const QString& fileName) = 0;
    virtual int lstPlayListCount() const = 0;
    // The window's first public method: brings the window up to date with List1 after a
    // playlist file was read into it.
    virtual void RefreshPlaylist() = 0;
};

}  // namespace cantovel
