// The playlist editor's files: the two parallel lists, loading and saving.
#include <QDir>

#include "app/FileNames.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "app/WriteFailure.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/msgbox/MsgBox.h"
#include "player/frmMain.h"
#include "playlist/PlaylistFile.h"
#include "playlist/frmPlaylist.h"
#include "playlist/frmTemp2.h"

namespace cantovel {

namespace {

// The playlists' recent-files entry: the path, and its length in bytes at this moment. A
// file that isn't there yet gets no entry.
void rememberPlaylist(const QString& path) {
    const qint64 size = SizeOfName(path);
    if (size < 0) return;
    frmTemp2::get().MRU.SetMRUList(path, QStringLiteral("File length: ") + QString::number(size));
}

void setSaved(bool saved) {
    if (frmMain* main = frmMain::instance()) main->PlaylistSaved = toVBool(saved);
}

}  // namespace

// ---- The lists ----

void frmPlaylist::lstPlayListClear() {
    lstPlayList->Clear();
}

void frmPlaylist::lstPlayListAddItem(const QString& fileName) {
    lstPlayList->AddItem(fileName);
}

int frmPlaylist::lstPlayListCount() const {
    return lstPlayList->ListCount();
}

void frmPlaylist::RefreshPlaylist() {
    // The player fills both lists itself; the window only brings its menus up to date.
    lstPlayList_Click();
}

void frmPlaylist::ClearLists() {
    lstPlayList->Clear();
    if (frmMain* main = frmMain::instance()) main->List1.clear();
}

void frmPlaylist::AppendRow(const QString& path) {
    AppendRows({path});
}

void frmPlaylist::AppendRows(const QStringList& paths) {
    QStringList names;
    names.reserve(paths.size());
    for (const QString& p : paths) names << PlaylistFile::RowName(p);
    if (frmMain* main = frmMain::instance()) main->List1 += paths;
    lstPlayList->AddItems(names);
}

int frmPlaylist::AppendPlaylist(const QString& path) {
    const QStringList rows = PlaylistFile::ReadPlaylist(path);
    AppendRows(rows);
    return int(rows.size());
}

// ---- Load and save ----

void frmPlaylist::mnuSave() {
    FileDialogRequest request;
    request.title = QStringLiteral("Save Current Playlist...");
    request.defaultExt = QStringLiteral("ply");
    request.filter = QStringLiteral("Cantovel Playlist|*.ply|Winamp Playlist|*.m3u");
    request.overwritePrompt = true;
    const FileDialogResult chosen = FileDialogs::get().save(this, request);
    const QString path = chosen.cancelled ? QString() : chosen.file();
    if (path.isEmpty()) return;

    rememberPlaylist(path);
    setSaved(true);
    frmMain* main = frmMain::instance();
    // A list the disk refused is not saved, and the user is told.
    if (!PlaylistFile::WritePlaylist(path, main ? main->List1 : QStringList())) {
        setSaved(false);
        MsgBoxShow(writeFailureText(path, QString()), Mb::Critical);
    }
}

void frmPlaylist::mnuLoad() {
    if (lstPlayList->ListCount() > 0) {
        frmMain* main = frmMain::instance();
        if (main && !main->PlaylistSaved &&
            MsgBoxShow(QStringLiteral("Do you wish to save your current playlist configuration "
                                      "before continuing?"),
                       Mb::YesNo | Mb::Question) == Mb::Yes)
            mnuSave();
    }

    FileDialogRequest request;
    request.title = QStringLiteral("Load Playlist File...");
    request.filter = QStringLiteral("Supported Playlists|*.ply;*.m3u|All Files|*.*");
    request.initDir =
        ReadAppSetting(QStringLiteral("Playlist Load Dialog Path"), QDir::currentPath());
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    const QString path = chosen.cancelled ? QString() : chosen.file();
    if (path.isEmpty()) return;

    rememberPlaylist(path);
    ClearLists();
    SaveAppSetting(QStringLiteral("Playlist Load Dialog Path"),
                   ParsePathParts(path, QStringLiteral("l")));
    AppendPlaylist(path);
    rowCount_ = lstPlayList->ListCount();
    setSaved(false);
    lstPlayList_Click();
}

}  // namespace cantovel
