// The File menu's playlist editor command: opens or closes the editor.
#include "app/Runtime.h"
#include "app/Settings.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "playlist/PlaylistSettings.h"
#include "playlist/frmPlaylist.h"

namespace cantovel {

void frmTemp::mnuPlaylist_Click() {
    if (frmPlaylist* open = frmPlaylist::instance()) {
        // Closing may be cancelled by the save question.
        const bool closed = open->unload();
        mnuPlaylist->setChecked(!closed);
        if (closed) SaveAppSetting(QStringLiteral("Playlist Visible"), CStr(false));
        return;
    }
    // A docked editor needs the whole main window beside it.
    frmMain* main = frmMain::instance();
    if (main && PlaylistSettings::dockSetting() < 4 &&
        mnuRollup->text() == QLatin1String("&Roll Down"))
        main->RollUp();
    new frmPlaylist();
    mnuPlaylist->setChecked(true);
    SaveAppSetting(QStringLiteral("Playlist Visible"), CStr(true));
}

}  // namespace cantovel
