#include "playlist/PlaylistDocking.h"

#include "player/frmMain.h"
#include "playlist/PlaylistSettings.h"
#include "playlist/frmPlaylist.h"

namespace cantovel {

namespace {

// The two windows when following is on, else nothing.
bool docked(frmMain*& main, frmPlaylist*& list, int& setting) {
    setting = PlaylistSettings::dockSetting();
    main = frmMain::instance();
    list = frmPlaylist::instance();
    if (setting == 5 || !main || !list) return false;
    return !main->isMinimized() && !list->isMinimized();
}

}  // namespace

QPoint PlaylistPlaceBesideMain(int setting) {
    const frmMain* main = frmMain::instance();
    const frmPlaylist* list = frmPlaylist::instance();
    if (!main) return {};
    const QRect m = main->frameGeometry();
    switch (setting) {
        case 1:
            // The main window's height stands where the editor's would fit.
            return {m.left(), m.top() - m.height()};
        case 2:
            return {m.left() - (list ? list->frameGeometry().width() : m.width()), m.top()};
        case 3:
            return {m.left() + m.width(), m.top()};
        default:
            return {m.left(), m.top() + m.height()};
    }
}

void MovePlaylistToMain() {
    frmMain* main;
    frmPlaylist* list;
    int setting;
    if (!docked(main, list, setting) || setting > 3) return;
    list->move(PlaylistPlaceBesideMain(setting));
}

void MoveMainToPlaylist() {
    frmMain* main;
    frmPlaylist* list;
    int setting;
    if (!docked(main, list, setting)) return;
    const QRect p = list->frameGeometry();
    switch (setting) {
        case 0:
            main->move(p.left(), p.top() - main->frameGeometry().height());
            break;
        case 1:
            main->move(p.left(), p.top() + main->frameGeometry().height());
            break;
        case 2:
            main->move(p.left() + main->frameGeometry().width(), p.top());
            break;
        case 3:
            main->move(p.left() - list->frameGeometry().width(), p.top());
            break;
        default:
            break;
    }
}

}  // namespace cantovel
