// The transport commands of the skin buttons, the Playback menu and the hotkeys.
#include <QFile>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "platform/cdreader/CDReader.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/msgbox/MsgBox.h"
#include "platform/shell/Shell.h"
#include "player/MediaClasses.h"
#include "player/PlayerWindows.h"
#include "player/QueueView.h"
#include "player/VideoPlayerWindow.h"
#include "player/VivoPlayerWindow.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "player/frmTempCD.h"

namespace cantovel {

using namespace MediaClasses;

namespace {

constexpr int kInformation = Mb::Information | Mb::SetForeground;

// The player of the file in hand, by its class (not the queue's).
MediaPlayer* videoPlayerMP() {
    VideoPlayerWindow* video = loadedWindow<VideoPlayerWindow>();
    return video ? video->MP() : nullptr;
}

MediaPlayer* queueAM() {
    QueueView* view = loadedWindow<QueueView>();
    return view ? view->AM() : nullptr;
}

CDReader* loadedCDReader() {
    frmTempCD* cd = Forms::find<frmTempCD>();
    return cd ? cd->CDReader.get() : nullptr;
}

}  // namespace

void frmMain::imgButton_Click(int index) {
    frmTemp& t = frmTemp::get();
    const bool loaded = t.mnuPlay->text() == QLatin1String("&Stop");
    switch (index) {
        case 0:
            t.mnuSeekPrev_Click();
            break;
        case 1:
            // A list of two or more runs; else the file in hand plays, or one is asked for.
            if (List1.size() > 1)
                mnuRunPlaylist();
            else if (CurrentFile.isEmpty())
                mnuPlay();
            else
                mnuPlayCurrent();
            break;
        case 2:
            if (t.mnuPause->isEnabled()) mnuPause();
            break;
        case 3:
            if (loaded) {
                StopRequested = VTrue;
                mnuStop();
            }
            break;
        case 4:
            t.mnuSeekNext_Click();
            break;
        case 5:
            if (loaded) {
                StopRequested = VTrue;
                mnuStop();
            }
            mnuPlay();
            break;
        case 6:
            t.mnuMute->trigger();
            break;
        case 7:
            t.mnuHelpFile->trigger();
            break;
        default:
            break;
    }
}

void frmMain::mnuStop() {
    const QString ext = extensionOf(CurrentFile);
    if (frmTempCD* cd = Forms::find<frmTempCD>()) {
        if (cd->CDReader) cd->CDReader->StopAudio();
        cd->unload();
    }
    if (VideoPlayerWindow* video = loadedWindow<VideoPlayerWindow>()) {
        if (MediaPlayer* mp = video->MP()) {
            mp->Stop();
            mp->setCurrentPosition(0);
        }
        formOf(video)->unload();
    }
    if (isVivo(ext)) {
        if (VivoPlayerWindow* vivo = loadedWindow<VivoPlayerWindow>()) {
            vivo->VvWeb1Stop();
            vivo->VvWeb1Open(QString());
            formOf(vivo)->unload();
        }
    }
    if (MediaPlayer* mp = frmTemp::get().MP.get();
        mp && mp->PlayState() == MediaPlayer::mpPlaying) {
        mp->Stop();
        mp->setCurrentPosition(0);
    }
    if (PlaylistRunning) {
        PlayQueue.clear();
        // The player tells its stop at once, so the queue goes off first: the stop must
        // not be taken for the end of an entry.
        PlaylistRunning = VFalse;
        if (MediaPlayer* am = queueAM()) am->Stop();
    }
    PlayStopped();
}

void frmMain::mnuPause() {
    if (CurrentFile.isEmpty()) {
        MsgBoxShow(QStringLiteral("No file is currently playing to pause."), kInformation);
        return;
    }
    frmTemp& t = frmTemp::get();
    const QString ext = extensionOf(CurrentFile);
    MediaPlayer* mp = isVideo(ext) ? videoPlayerMP() : t.MP.get();
    VivoPlayerWindow* vivo = loadedWindow<VivoPlayerWindow>();
    CDReader* reader = loadedCDReader();

    // In a queue both the queue's player and the file's own get the command; the latter
    // is idle then.
    if (t.mnuPause->text() == QLatin1String("Pa&use")) {
        t.mnuPause->setText(QStringLiteral("&Resume"));
        // A row played alone plays in the queue's player too, outside a run.
        if (MediaPlayer* am = queueAM();
            am && (PlaylistRunning || am->PlayState() == MediaPlayer::mpPlaying))
            am->Pause();
        if (isAudioCD(ext)) {
            Timer2.setEnabled(false);
            CDR_Timer.setEnabled(false);
            if (reader) {
                cdPausePosition_ = reader->Position();
                reader->PauseAudio();
            }
        } else if (isVivo(ext)) {
            if (vivo) vivo->VvWeb1Stop();
        } else if (mp) {
            mp->Pause();
        }
        if (!isAudioCD(ext)) Timer3.setEnabled(false);
    } else {
        t.mnuPause->setText(QStringLiteral("Pa&use"));
        if (MediaPlayer* am = queueAM();
            am && (PlaylistRunning || am->PlayState() == MediaPlayer::mpPaused))
            am->Play();
        if (isAudioCD(ext)) {
            if (reader) {
                const QList<CDTrack> tracks = reader->Tracks();
                const quint32 length = CurrentTrack >= 0 && CurrentTrack < tracks.size()
                                           ? tracks[CurrentTrack].Length
                                           : 0;
                reader->PlayAudioRange(cdPausePosition_, length);
            }
            Timer2.setEnabled(true);
            CDR_Timer.setEnabled(true);
        } else if (isVivo(ext)) {
            if (vivo) vivo->VvWeb1Play();
        } else if (mp) {
            mp->Play();
        }
        // A CD's time runs on CDR_Timer, which Timer3's tick would stop.
        if (!isAudioCD(ext)) Timer3.setEnabled(true);
    }
}

bool frmMain::thumbAtRightEnd() const {
    return imgPlayProgress.rect.left() >= 284 - 2 - imgPlayProgress.rect.width();
}

void frmMain::rewindAtRightEnd() {
    // The thumb stops short of this end, so in practice this never happens.
    if (!thumbAtRightEnd()) return;
    MoveThumb(16);
    if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->setCurrentPosition(mp->SelectionStart());
}

void frmMain::mnuPlayCurrent() {
    if (CurrentFile.isEmpty()) {
        MsgBoxShow(QStringLiteral("No file is currently loaded to play.\r\n"
                                  "Select \"\"Play New File\"\" to open\r\n"
                                  "the desired media."),
                   kInformation);
        return;
    }
    rewindAtRightEnd();
    const QString path = CurrentFile;
    const QString ext = extensionOf(path);
    if (isVivo(ext))
        openVivo(path);
    else if (isAudioCD(ext))
        openAudioCD(path);
    else if (isVideo(ext))
        openVideo(path, OpenEntry::PlayCurrent);
    else if (ext == QLatin1String(".asf"))
        openAsf(path, OpenEntry::PlayCurrent);
    else
        openAudio(path, OpenEntry::PlayCurrent);
}

void frmMain::mnuRunPlaylist() {
    rewindAtRightEnd();
    startQueue();
}

void frmMain::SeekFromThumb() {
    if (CurrentFile.isEmpty()) return;
    const int span = 268 - imgPlayProgress.rect.width();
    if (span == 0) return;
    // A CD plays on whatever the thumb says: its timer puts the thumb back.
    SeekTo(double(Int(TrackLength * double(imgPlayProgress.rect.left() - 16) / span)));
}

void frmMain::SeekTo(double seconds) {
    if (CurrentFile.isEmpty()) return;
    if (PlaylistRunning) {
        if (MediaPlayer* am = queueAM()) am->setCurrentPosition(seconds);
        return;
    }
    if (displayBusy_) return;
    MediaPlayer* mp = frmTemp::get().MP.get();
    if (mp && mp->PlayState() == MediaPlayer::mpPlaying)
        mp->setCurrentPosition(seconds);
    else if (MediaPlayer* video = videoPlayerMP())
        video->setCurrentPosition(seconds);
}

void frmMain::mnuDelete() {
    if (CurrentFile.isEmpty()) {
        MsgBoxShow(QStringLiteral("No file is currently loaded to delete."), kInformation);
        return;
    }
    if (isAudioCD(extensionOf(CurrentFile))) {
        MsgBoxShow(QStringLiteral("CD-ROM media is read-only, and cannot be deleted from."),
                   kInformation);
        return;
    }
    if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->Stop();
    const int answer = MsgBoxShow(
        QStringLiteral("Are you sure you want to delete:  ") + CurrentFile + QStringLiteral("?"),
        Mb::YesNo | Mb::Question);
    // A file the Trash refused is still there and still loaded; once said is enough.
    if (answer == Mb::Yes && !deleteCurrentFile())
        return;
    else if (answer == Mb::No)
        deleteDeclined_ = true;
    // The removal runs once more whatever the answer: after Yes it finds no file, after
    // No it removes it. The answer does not protect the file, which is why it goes to the
    // Trash, where the user can get it back.
    deleteCurrentFile();
}

bool frmMain::deleteCurrentFile() {
    if (MediaPlayer* mp = frmTemp::get().MP.get()) {
        mp->Stop();
        mp->setFileName(QString());
    }
    if (FileExists(CurrentFile)) {
        // A read-only file goes too.
        QFile::setPermissions(CurrentFile, QFile::permissions(CurrentFile) | QFile::WriteOwner);
        if (!Shell::get().moveToTrash(CurrentFile)) {
            MsgBoxShow(QStringLiteral("The file '") + CurrentFile +
                           QStringLiteral("' could not be moved to the Trash, so it was not "
                                          "deleted."),
                       Mb::Exclamation | Mb::SetForeground);
            return false;
        }
    }
    frmTemp::get().mnuPlay->setText(QStringLiteral("&Open..."));
    Title(QString());
    CurrentFile.clear();
    return true;
}

}  // namespace cantovel
