// The commands that change the list: new, add, drop, remove, move, thin, deselect. Each
// change is made to the window's list and to frmMain.List1 alike, by index.
#include <QApplication>
#include <QDir>
#include <QFontMetrics>
#include <QHash>
#include <vector>

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

// Which rows one Delete Duplicates pass keeps. The pass: for each round I, J runs from I
// to the row count read at the round's start, inclusive, and row J goes when its text
// equals row I's. So row I goes first; the row that moves up into I is the round's text
// and stays for good; each later row of that text goes, but the row that moves into the
// place of one just removed is stepped over. Beyond the last row a row reads as empty and
// cannot be removed, which ends the pass: at once when the round's text is empty, and
// always before I runs out. Walked row by row that is quadratic; here each round visits
// only the rows of its own text, each text losing at least half of them a round.
QList<bool> thinnedRows(const QStringList& texts) {
    const int n = int(texts.size());
    QList<bool> keep(n, true);
    // The rows still there, as a ring through the sentinel `n`.
    std::vector<int> next(size_t(n) + 1), prev(size_t(n) + 1);
    for (int i = 0; i <= n; ++i) {
        next[size_t(i)] = i == n ? (n > 0 ? 0 : n) : i + 1;
        prev[size_t(i)] = i == 0 ? n : i - 1;
    }
    auto unlink = [&](int row) {
        keep[row] = false;
        next[size_t(prev[size_t(row)])] = next[size_t(row)];
        prev[size_t(next[size_t(row)])] = prev[size_t(row)];
    };
    // The rows of each text, in order; those before `front` are gone or settled.
    QHash<QString, int> groupOf;
    std::vector<int> group(texts.size());
    std::vector<std::vector<int>> rows;
    for (int i = 0; i < n; ++i) {
        auto it = groupOf.constFind(texts[i]);
        if (it == groupOf.cend()) {
            it = groupOf.insert(texts[i], int(rows.size()));
            rows.emplace_back();
        }
        group[size_t(i)] = *it;
        rows[size_t(*it)].push_back(i);
    }
    std::vector<size_t> front(rows.size(), 0);
    int settled = n;  // the last row a round settled; rows after it are the rest
    auto firstUnsettled = [&] { return next[size_t(settled)]; };
    const int end = n;

    for (;;) {
        const int first = firstUnsettled();
        if (first >= end) break;  // round I is past the last row
        ++front[size_t(group[size_t(first)])];
        unlink(first);
        const int key = firstUnsettled();
        if (key >= end) break;  // the round's text reads as empty
        const int g = group[size_t(key)];
        ++front[size_t(g)];
        settled = key;
        // The rest of the rows of the round's text, with the step over after a removal.
        std::vector<int>& same = rows[size_t(g)];
        size_t out = front[size_t(g)];
        int stepOver = -1;
        for (size_t k = front[size_t(g)]; k < same.size(); ++k) {
            const int row = same[k];
            if (row == stepOver) {
                same[out++] = row;
                stepOver = -1;
                continue;
            }
            stepOver = next[size_t(row)];
            unlink(row);
        }
        same.resize(out);
        if (texts[key].isEmpty()) break;
    }
    return keep;
}

QList<bool> rowsNotIn(const QVector<int>& sorted, qsizetype count) {
    QList<bool> keep(count, true);
    for (int row : sorted)
        if (row >= 0 && row < count) keep[row] = false;
    return keep;
}

void keepRows(QStringList& list, const QList<bool>& keep) {
    QStringList kept;
    kept.reserve(list.size());
    for (qsizetype i = 0; i < list.size(); ++i)
        if (i >= keep.size() || keep[i]) kept << list[i];
    list = std::move(kept);
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
    // All in one pass: thousands of scattered rows go as fast as one.
    lstPlayList->KeepRows(rowsNotIn(rows, lstPlayList->ListCount()));
    if (QStringList* paths = list1()) keepRows(*paths, rowsNotIn(rows, paths->size()));
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
    List.KeepRows(thinnedRows(List.texts()));
}

void frmPlaylist::RemoveDupes(QStringList& List) {
    keepRows(List, thinnedRows(List));
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
