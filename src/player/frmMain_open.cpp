// How a file enters the player: the open dialog, the command line, a later start's
// hand-off, the recent files and a drop. Each way classifies the file by its extension
// and hands it to one of the players, or reads it as a playlist. The five ways do not
// test the classes in the same order, and that is on purpose.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>

#include "app/FileNames.h"
#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/clock/Clock.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/msgbox/MsgBox.h"
#include "platform/shell/Shell.h"
#include "player/MediaClasses.h"
#include "player/PlayerSettings.h"
#include "player/PlayerWindows.h"
#include "player/PlaylistView.h"
#include "player/QueueView.h"
#include "player/VideoPlayerWindow.h"
#include "player/VivoPlayerWindow.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "player/frmTempCD.h"
#include "playlist/PlaylistFile.h"

namespace cantovel {

using namespace MediaClasses;

namespace {

const QString kOpenFilter =
    QStringLiteral(
        "All Media "
        "Formats|*.ply;*.viv;*.vivo;*.rm;*.rmm;*.cda;*.avi;*.mp3;*.mpg;*.mpa;*.mpv;*.mov;*.qt;*."
        "mpeg;*."
        "enc;*.m1v;*.mp2;*.asf;*.wav;*.asx;*.wax;*.m3u;*.wvx;*.wmv;*.mid;*.midi;*.aif;*.aiff;*."
        "aifc;*."
        "au;*.snd;*.rmi;*.dat;*.wma;") +
    QLatin1String(kModernAudioPatterns) + QStringLiteral(";") + QLatin1String(kModernFilmPatterns) +
    QStringLiteral(
        "|MPEG Layer-3 Audio (MP3)|*.mp3|Windows Media 4|*.wma;*.wmv|Audio "
        "CD|*.cda|Video CD|*.dat|Vivo (Digital Video)|*.viv;*.vivo|DirectShow "
        "Formats|*.mpg;*.mpa;*.mpv;*.mov;*.qt;*.mpeg;*.enc;*.m1v;*.mp2|Active Streaming "
        "Format|*.asf|Standard Audio Formats|*.wav;*.mid;*.midi;*.rmi;*.aif;*.aiff;*.aifc;*.au;*."
        "snd|Video for Windows|*.avi|Media Playlists|*.asx;*.wax;*.m3u;*.wvx|Cantovel "
        "Playlist|*.ply");

const QString kPlayError = QStringLiteral(
    "An error occurred attempting to play the current file.  The file is invalid, corrupt, or "
    "an unsupported format.");

QString loadError(const QString& fileName) {
    return QStringLiteral("An error occurred attempting to load \"") + fileName +
           QStringLiteral(
               "\".  The file is most likely corrupt, invalid, or an unsupported format.");
}

const QString kEmptyPlaylist = QStringLiteral(
    "The selected playlist does not contain any media files.  In order to proceed, load the "
    "Playlist Editor and create your playllist.  Be sure to save your playlist afterwards.");

const QString kAsfQuestion = QStringLiteral(
    "The ASF extension can contain both audio and video content.  If the selected file is an "
    "audio file, click \"Yes\"; otherwise, if the selected file is video, click \"No\".");

constexpr int kInformation = Mb::Information | Mb::SetForeground;

}  // namespace

// ---- The five entries ----

void frmMain::mnuPlay() {
    Timer1.setEnabled(false);
    if (frmTemp::get().mnuPlay->text() != QLatin1String("&Open...")) {
        // The stop side.
        if (PlayerSettings::loopOther()) StopRequested = VTrue;
        mnuStop();
        return;
    }

    FileDialogRequest request;
    request.title = QStringLiteral("Open Media File...");
    request.filter = kOpenFilter;
    request.initDir = ReadAppSetting(QStringLiteral("Main Play Path"), QDir::currentPath());
    const FileDialogResult chosen = FileDialogs::get().open(this, request);
    const QString path = chosen.cancelled ? QString() : chosen.file();
    if (path.isEmpty()) return;

    const QString ext = extensionOf(path);
    clearLists();
    if (!isPlaylist(ext)) addToLists(path);
    PlaylistSaved = VTrue;
    SaveAppSetting(QStringLiteral("Main Play Path"), ParsePathParts(path, QStringLiteral("l")));
    CurrentFile = path;
    stopAllPlayers();

    // ".vivo" is not looked for here: it plays in the hidden player.
    if (ext == QLatin1String(".viv"))
        openVivo(path);
    else if (isPlaylist(ext))
        openPlaylist(path);
    else if (isAudioCD(ext))
        openAudioCD(path);
    else if (ext == QLatin1String(".asf"))
        openAsf(path, OpenEntry::Dialog);
    else if (isVideo(ext))
        openVideo(path, OpenEntry::Dialog);
    else
        openAudio(path, OpenEntry::Dialog);
}

void frmMain::OpenCommandLine(const QString& path) {
    const QString ext = extensionOf(path);
    CurrentFile = path;
    clearLists();
    if (!isPlaylist(ext)) addToLists(path);
    PlaylistSaved = VFalse;

    // No ".asf" question from the command line.
    if (isVideo(ext))
        openVideo(path, OpenEntry::CommandLine);
    else if (isVivo(ext))
        openVivo(path);
    else if (isPlaylist(ext))
        openPlaylist(path);
    else if (isAudioCD(ext))
        openAudioCD(path);
    else
        openAudio(path, OpenEntry::CommandLine);
}

void frmMain::OpenHandedOver(const QString& path) {
    // A path that names no file keeps the current file and its play; the dispatch below
    // still reaches the player, which refuses it.
    if (FileExists(path)) {
        addToRecentFiles(path);
        Shell::get().addRecentDocument(path);
        showFileTitle(path);
        // A file played at this moment is stopped.
        CurrentFile = path;
        if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->Stop();
        if (frmTempCD* cd = Forms::find<frmTempCD>(); cd && cd->CDReader) cd->CDReader->StopAudio();
    }

    // Only the hidden list is replaced; the playlist window gets the name added.
    List1 = QStringList{path};
    PlaylistSaved = VFalse;
    if (PlaylistView* view = loadedWindow<PlaylistView>())
        view->lstPlayListAddItem(ParsePathParts(path, QStringLiteral("f")));

    const QString ext = extensionOf(path);
    if (isVideo(ext)) {
        openVideo(path, OpenEntry::Dde);
    } else if (isVivo(ext)) {
        openVivo(path);
    } else if (isAudioCD(ext) || isPlaylist(ext)) {
        unloadWindow<VideoPlayerWindow>();
        unloadWindow<QueueView>();
        if (isAudioCD(ext))
            openAudioCD(path);
        else
            openPlaylist(path);
    } else {
        openAudio(path, OpenEntry::Dde);
    }
}

void frmMain::mnuMRU(int index) {
    frmTemp& t = frmTemp::get();
    if (index < 0 || index >= int(t.mnuFileMRU.size())) return;
    // The row reads "&1. " and the path.
    const QString caption = t.mnuFileMRU[index]->text();
    const qsizetype dot = caption.indexOf(QLatin1String(". "));
    const QString path = dot >= 0 ? caption.mid(dot + 2) : caption;
    if (path.isEmpty()) return;

    const QString ext = extensionOf(path);
    clearLists();
    if (!isPlaylist(ext)) addToLists(path);
    PlaylistSaved = VTrue;
    CurrentFile = path;
    stopAllPlayers();

    if (isPlaylist(ext))
        openPlaylist(path);
    else if (ext == QLatin1String(".viv"))
        openVivo(path);
    else if (isAudioCD(ext))
        openAudioCD(path);
    else if (isVideo(ext))
        openVideo(path, OpenEntry::Mru);
    else
        openAudio(path, OpenEntry::Mru);
}

void frmMain::Process_DROPFILES() {
    clearLists();
    const QStringList dropped = DroppedFiles;
    for (const QString& path : dropped) {
        if (!FileExists(path)) continue;
        // Each file stops the one before, so the last one plays; all stay listed.
        StopRequested = VTrue;
        mnuStop();
        const QString ext = extensionOf(path);
        if (!isPlaylist(ext)) addToLists(path);
        CurrentFile = path;

        // No ".asf" question for a drop, and ".vivo" plays in the hidden player.
        if (ext == QLatin1String(".viv"))
            openVivo(path);
        else if (isAudioCD(ext))
            openAudioCD(path);
        else if (isVideo(ext))
            openVideo(path, OpenEntry::Drop);
        else if (isPlaylist(ext))
            openPlaylist(path);
        else
            openAudio(path, OpenEntry::Drop);
    }
    PlaylistSaved = VFalse;
}

// ---- The lists ----

void frmMain::clearLists() {
    List1.clear();
    if (PlaylistView* view = loadedWindow<PlaylistView>()) view->lstPlayListClear();
}

void frmMain::addToLists(const QString& path) {
    List1.append(path);
    if (PlaylistView* view = loadedWindow<PlaylistView>())
        view->lstPlayListAddItem(ParsePathParts(path, QStringLiteral("f")));
}

void frmMain::stopAllPlayers() {
    // A player that never came up has nothing to stop.
    if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->Stop();
    if (QueueView* view = loadedWindow<QueueView>(); view && view->AM()) view->AM()->Stop();
    if (frmTempCD* cd = Forms::find<frmTempCD>(); cd && cd->CDReader) cd->CDReader->StopAudio();
}

void frmMain::addToRecentFiles(const QString& path) {
    MruList* mru = frmTemp::get().MRU.get();
    const qint64 size = SizeOfName(path);
    if (!mru || size < 0) return;
    mru->SetMRUList(path, QStringLiteral("File length: ") + QString::number(size));
}

void frmMain::showFileTitle(const QString& path) {
    Title(ParsePathParts(
        path, PlayerSettings::showExtension() ? QStringLiteral("f") : QStringLiteral("b")));
}

// ---- The players ----

QString frmMain::playErrorText() {
    return kPlayError;
}

void frmMain::refuseFile(const QString& path, OpenEntry entry) {
    clearLists();
    const bool atLoad = entry == OpenEntry::CommandLine || entry == OpenEntry::Dde;
    MsgBoxShow(atLoad ? loadError(ParsePathParts(path, QStringLiteral("f"))) : kPlayError,
               kInformation);
}

void frmMain::openAudio(const QString& path, OpenEntry entry) {
    MediaPlayer* mp = frmTemp::get().MP.get();
    if (!mp) return;
    // Replaying what the player holds needs no new open.
    if (entry != OpenEntry::PlayCurrent || mp->fileName() != path) mp->setFileName(path);
    mp->Play();
    if (mp->lastError() == MediaPlayer::ErrorFail) {
        refuseFile(path, entry);
        return;
    }
    if (entry == OpenEntry::PlayCurrent) {
        // No open event follows a replay: the display is started here.
        OpenComplete(long(Int(mp->SelectionEnd())));
        Timer3.setEnabled(true);
    }
    if (isVisible()) raise();
    addToRecentFiles(path);
    Shell::get().addRecentDocument(path);
    // The title follows when the player reports the file open.
}

void frmMain::openVideo(const QString& path, OpenEntry entry) {
    VideoPlayerWindow* video = touchWindow<VideoPlayerWindow>();
    if (!video) return;
    QPointer<Form> window = formOf(video);
    video->SetVideoFile(path);
    addToRecentFiles(path);
    QPointer<MediaPlayer> mp = video->MP();
    if (!mp) return;
    mp->setFileName(path);
    if (!mp) return;
    mp->Play();
    if (mp && mp->lastError() == MediaPlayer::ErrorFail) {
        refuseFile(path, entry);
        return;
    }
    // The video window shows; this one stays where it is.
    if (window) window->show();
    Shell::get().addRecentDocument(path);
}

void frmMain::openVivo(const QString& path) {
    VivoPlayerWindow* vivo = touchWindow<VivoPlayerWindow>();
    if (!vivo) return;
    hide();
    vivo->VvWeb1Open(path);
    vivo->VvWeb1Play();
    if (Form* window = formOf(vivo)) window->show();
}

void frmMain::openAudioCD(const QString& path) {
    CDReader* reader = Forms::touch<frmTempCD>().ReaderFor(path);
    if (!reader || !waitForDisc(*reader)) return;
    // "Track05" is index 4, shown as track 5.
    if (const auto track = CLng(Val(ParsePathParts(path, QStringLiteral("b")).mid(5))))
        CurrentTrack = long(*track) - 1;
    PlayDiscTrack(*reader);
    CDR_Timer.setEnabled(true);
    ShowTrackTitle();
}

void frmMain::openAsf(const QString& path, OpenEntry entry) {
    const int answer = MsgBoxShow(kAsfQuestion, Mb::YesNo | Mb::Question);
    if (answer == Mb::Yes) {
        openAudio(path, entry);
    } else if (answer == Mb::No) {
        hide();
        openVideo(path, entry);
    }
}

void frmMain::openPlaylist(const QString& path) {
    // Lines that name no file come back as the playlist itself, which a run passes over.
    for (const QString& row : PlaylistFile::ReadPlaylist(path)) addToLists(row);

    PlaylistSaved = VFalse;
    if (PlaylistView* view = loadedWindow<PlaylistView>(); view && view->lstPlayListCount() > 0)
        view->RefreshPlaylist();
    Clock::get().doEvents();
    if (unloaded()) return;

    if (List1.isEmpty()) {
        MsgBoxShow(kEmptyPlaylist, kInformation);
        return;
    }
    startQueue();
}

void frmMain::startQueue() {
    mnuStop();
    PlayStopped();
    PlaylistRunning = VTrue;
    if (PlayerSettings::audioRandomize()) {
        Randomize();
        PlayIndex = long(Int(Rnd() * double(List1.size()) + 1));
    } else {
        PlayIndex = 0;
    }
    PlayQueue = List1;
    frmTemp& t = frmTemp::get();
    t.mnuSeekPrev->setEnabled(PlayQueue.size() > 1);
    t.mnuSeekNext->setEnabled(PlayQueue.size() > 1);
    Play_Start();
    ShowEntryTitle();
}

}  // namespace cantovel
