// The commands that change the list: new, add, drop, remove, move, thin, deselect. Each
// change is made to the window's list and to frmMain.List1 alike, by index.
#include <QApplication>
#include <QDir>
#include <QFontMetrics>

#include "app/FileNames.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/msgbox/MsgBox.h"
#include "player/MediaClasses.h"
#include "player/frmMain.h"
#include "playlist/PlaylistFile.h"
#include "playlist/frmPlaylist.h"

namespace cantovel {

using MediaClasses::isOneOf;

namespace {

const QString kModernAudio = QLatin1String(MediaClasses::kModernAudioPatterns);
const QString kAddFilter =
    QStringLiteral(
        "Audio and Video "
        "Files|*.ply;*.m3u;*.cda;*.mp3;*.mp2;*.wma;*.wav;*.asx;*.wax;*.m3u;*.asf;*.aif;*.au;*.aiff;"
        "*.mid;*.midi;*.rmi;*.snd;*.avi;*.mov;*.mpg;*.mpeg;*.dat;*.m1v;*.enc;*.qt;*.mpv;*.mpa;*."
        "m1v;*"
        ".enc;") +
    kModernAudio + QStringLiteral(";*.wmv;") + QLatin1String(MediaClasses::kModernFilmPatterns) +
    QStringLiteral(
        "|Audio "
        "Files|*.cda;*.mp3;*.mp2;*.wma;*.wav;*.asx;*.wax;*.m3u;*.asf;*.aif;*.au;*.aiff;*.mid;*."
        "midi;"
        "*.rmi;*.snd;") +
    kModernAudio +
    QStringLiteral(
        "|Video "
        "Files|*.avi;*.mov;*.mpg;*.mpeg;*.dat;*.m1v;*.enc;*.qt;*.mpv;*.mpa;*.m1v;*.enc;*.wmv;") +
    QLatin1String(MediaClasses::kModernFilmPatterns);

// What the hidden file list of a dropped folder lets in.
const QStringList kFolderPattern = {"*.cda", "*.mp3",  "*.mp2",  "*.wav", "*.asx", "*.wax",
                                    "*.m3u", "*.wvx",  "*.asf",  "*.aif", "*.au",  "*.aiff",
                                    "*.mid", "*.midi", "*.rmi",  "*.snd", "*.ply", "*.flac",
                                    "*.ogg", "*.oga",  "*.opus", "*.m4a", "*.aac"};

// Dropped sound files, taken as one row each; a folder's ".cda" files are not among them.
bool droppedSound(const QString& ext) {
    return isOneOf(ext, {".mp2", ".mp3", ".asf", ".wav", ".aif", ".aifc", ".aiff", ".wmv", ".asx",
                         ".wax", ".m3u", ".rpm", ".mid", ".midi", ".rmi", ".snd", ".au"}) ||
           MediaClasses::isModernAudio(ext);
}

bool droppedFilm(const QString& ext) {
    return isOneOf(
        ext, {".avi", ".mov", ".mpg", ".mpeg", ".dat", ".m1v", ".enc", ".qt", ".mpv", ".mpa"});
}

void setSaved(bool saved) {
    if (frmMain* main = frmMain::instance()) main->PlaylistSaved = toVBool(saved);
}

QStringList* list1() {
    frmMain* main = frmMain::instance();
    return main ? &main->List1 : nullptr;
}

// One Delete Duplicates pass over any list. The bounds are inclusive and reach past the
// last row, where a row reads as empty; removing a row that isn't there ends the pass.
template <class Count, class Text, class Remove>
void thinPass(Count count, Text text, Remove remove) {
    const int n = count();
    for (int i = 0; i <= n; ++i) {
        const int m = count();
        for (int j = i; j <= m; ++j)
            if (text(j) == text(i) && !remove(j)) return;
    }
}

}  // namespace

bool frmPlaylist::listAdjustable() {
    if (lstPlayList->isEnabled()) return true;
    MsgBoxShow(QStringLiteral("If you wish to adjust the playlist, you must stop the currently "
                              "playing media beforehand."),
               Mb::Information);
    return false;
}

void frmPlaylist::mnuNew() {
    ClearLists();
    setSaved(true);
}

void frmPlaylist::mnuAdd() {
    if (!listAdjustable()) return;
    FileDialogRequest request;
    request.title = QStringLiteral("Select Audio Files:");
    request.filter = kAddFilter;
    request.filterIndex = 1;
    request.multiSelect = true;
    request.initDir =
        ReadAppSetting(QStringLiteral("Playlist Add Dialog Path"), QDir::currentPath());
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    if (chosen.cancelled || chosen.files.isEmpty() || chosen.file().isEmpty()) return;

    setSaved(false);
    if (chosen.files.size() > 1)
        AddSelectedFiles(chosen.files);
    else
        addDialogFile(chosen.file());
    renewHorizontalExtent();
    lstPlayList_Click();
}

void frmPlaylist::addDialogFile(const QString& path) {
    const QString folder = ParsePathParts(path, QStringLiteral("l"));
    SaveAppSetting(QStringLiteral("Playlist Add Dialog Path"), folder);
    if (MediaClasses::isPlaylist(MediaClasses::extensionOf(path)))
        AppendPlaylist(path);
    else
        AppendRow(path);
}

void frmPlaylist::AddSelectedFiles(const QStringList& paths) {
    for (const QString& path : paths)
        if (!path.isEmpty()) addDialogFile(path);
    rowCount_ = lstPlayList->ListCount();
}

void frmPlaylist::renewHorizontalExtent() {
    // The widest row seen so far; the field is never reset, so the extent only grows.
    const QFontMetrics metrics(lstPlayList->font());
    for (const QString& text : lstPlayList->texts())
        extentWidth_ = std::max(extentWidth_, metrics.horizontalAdvance(text));
    lstPlayList->setHorizontalExtent(extentWidth_ + 20);
}

void frmPlaylist::mnuRemove() {
    if (!listAdjustable()) return;
    if (lstPlayList->ListCount() == 0) {
        MsgBoxShow(QStringLiteral("No files are currently in your playlist to remove."),
                   Mb::Information);
        return;
    }
    setSaved(false);
    removeSelectedRows();
    lstPlayList_Click();
}

void frmPlaylist::removeSelectedRows() {
    const QVector<int> rows = lstPlayList->selectedRowList();
    if (rows.isEmpty()) return;
    QStringList* paths = list1();
    // From the last run of selected rows to the first, each run in one step.
    for (qsizetype end = rows.size(); end > 0;) {
        qsizetype start = end - 1;
        while (start > 0 && rows[start - 1] == rows[start] - 1) --start;
        const int first = rows[start], count = int(end - start);
        lstPlayList->RemoveRange(first, count);
        if (paths && first < paths->size())
            paths->remove(first, std::min<qsizetype>(count, paths->size() - first));
        end = start;
    }
    // The lowest removed row, or the new last row, takes the selection.
    const int count = lstPlayList->ListCount();
    if (count > 0) {
        lstPlayList->clearSelection();
        lstPlayList->setListIndex(std::min(rows.first(), count - 1));
    }
}

void frmPlaylist::mnuMoveUp() {
    moveRow(false);
}

void frmPlaylist::mnuMoveDown() {
    moveRow(true);
}

void frmPlaylist::moveRow(bool down) {
    if (!listAdjustable()) return;
    setSaved(false);
    int index = lstPlayList->ListIndex();
    if (index < 0 || index >= lstPlayList->ListCount()) return;
    QStringList* paths = list1();
    const QString name = lstPlayList->List(index);
    const QString path = paths && index < paths->size() ? paths->at(index) : QString();
    lstPlayList->RemoveItem(index);
    if (paths && index < paths->size()) paths->removeAt(index);

    // Past either end the row wraps round: the last goes to the top, the first to the end.
    const int count = lstPlayList->ListCount();
    if (down) {
        if (index == count) index = -1;
        ++index;
    } else {
        if (index == 0) index = count + 1;
        --index;
    }
    index = std::clamp(index, 0, count);
    lstPlayList->InsertItem(index, name);
    if (paths) paths->insert(std::min<qsizetype>(index, paths->size()), path);
    lstPlayList->clearSelection();
    lstPlayList->setListIndex(index);
    lstPlayList_Click();
}

void frmPlaylist::mnuDeselectAll() {
    if (!listAdjustable()) return;
    lstPlayList->clearSelection();
    lstPlayList_Click();
}

void frmPlaylist::RemoveDupes(PlaylistListBox& List) {
    thinPass([&] { return List.ListCount(); }, [&](int i) { return List.List(i); },
             [&](int i) { return List.RemoveItem(i); });
}

void frmPlaylist::RemoveDupes(QStringList& List) {
    thinPass([&] { return int(List.size()); }, [&](int i) { return List.value(i); },
             [&](int i) {
                 if (i < 0 || i >= List.size()) return false;
                 List.removeAt(i);
                 return true;
             });
}

void frmPlaylist::Process_DROPFILES() {
    for (const QString& path : std::as_const(DroppedFiles)) {
        if (!FileExists(path)) {
            if (!PathExists(path)) continue;
            // A folder: its own files of the listed kinds, not those of its subfolders.
            QString folder = path;
            if (!folder.endsWith(u'/')) folder += u'/';
            QStringList rows;
            for (const QString& name : FilesInFolder(path)) {
                if (!QDir::match(kFolderPattern, name)) continue;
                const QString file = folder + name;
                const QString ext = MediaClasses::extensionOf(file);
                if (droppedSound(ext)) {
                    rows << file;
                } else if (ext == QLatin1String(".ply")) {
                    AppendRows(rows);
                    rows.clear();
                    AppendPlaylist(file);
                }
            }
            AppendRows(rows);
            continue;
        }
        const QString ext = MediaClasses::extensionOf(path);
        if (droppedSound(ext) || droppedFilm(ext)) {
            AppendRow(path);
            setSaved(false);
        } else if (ext == QLatin1String(".ply")) {
            AppendPlaylist(path);
        }
    }
    setSaved(false);
    rowCount_ = lstPlayList->ListCount() - 1;
    lstPlayList_Click();
}

}  // namespace cantovel
