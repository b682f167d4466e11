#pragma once
// A docked playlist editor and the main window follow each other exactly: moving either
// moves the other to the side the setting `Dock Playlist Window` names. Nothing follows
// with the setting at 5 (none), with the editor closed, or while either is minimised.

#include <QPoint>

namespace cantovel {

// Where the editor stands beside the main window for a dock setting (0 to 3); below it
// for any other. The editor's own place before it has ever been stored.
QPoint PlaylistPlaceBesideMain(int setting);

// Puts the editor beside the main window; on the main window's moves and sizes, and
// after a change of the setting.
void MovePlaylistToMain();
// Puts the main window beside the editor; on the editor's moves and at its load.
void MoveMainToPlaylist();

}  // namespace cantovel
