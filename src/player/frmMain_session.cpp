// The playback session: what happens between a file being opened and the window going
// back to idle, in single mode and in queue mode, and the timers that drive the face.
#include <QPointer>
#include <algorithm>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "platform/cdreader/CDReader.h"
#include "platform/clock/Clock.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/msgbox/MsgBox.h"
#include "player/MediaClasses.h"
#include "player/PlayerSettings.h"
#include "player/PlayerWindows.h"
#include "player/QueueView.h"
#include "player/VideoPlayerWindow.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "player/frmTempCD.h"

namespace cantovel {

using namespace MediaClasses;

namespace {

// The level the face shows while something plays: it has no relation to the sound.
quint8 randomLevel() {
    return quint8(Int(Rnd() * 71) + 30);
}

}  // namespace

bool frmMain::wireSession() {
    connect(&Timer1, &Timer::timeout, this, &frmMain::Timer1_Timer);
    connect(&Timer2, &Timer::timeout, this, &frmMain::Timer2_Timer);
    connect(&Timer3, &Timer::timeout, this, &frmMain::Timer3_Timer);
    connect(&CDR_Timer, &Timer::timeout, this, &frmMain::CDR_Timer_Timer);
    return true;
}

void frmMain::OpenComplete(long seconds) {
    // The length is a 16-bit number; a longer one does not fit and leaves it as it was.
    if (seconds >= -32768 && seconds <= 32767) TrackLength = qint16(seconds);
    ShowClockField(6, ClockText(double(seconds)));

    frmTemp& t = frmTemp::get();
    t.mnuPlay->setText(QStringLiteral("&Stop"));
    t.popVidPlay->setText(QStringLiteral("&Stop"));
    t.mnuPlayCurrent->setEnabled(false);
    t.popVidPlayCurrent->setEnabled(false);
    t.mnuPause->setEnabled(true);
    t.popVidPause->setEnabled(true);

    if (isAudioCD(extensionOf(CurrentFile))) {
        ShowTrackTitle();
        Timer2.setEnabled(true);
        Timer3.setEnabled(false);
    } else {
        showFileTitle(CurrentFile);
    }
}

void frmMain::PlayStopped() {
    EQVolume(0);
    frmTemp& t = frmTemp::get();
    t.mnuPlay->setText(QStringLiteral("&Open..."));
    t.popVidPlay->setText(QStringLiteral("&Play New File"));
    t.mnuPlayCurrent->setEnabled(true);
    t.mnuPause->setEnabled(false);
    t.popVidPause->setEnabled(false);
    CDR_Timer.setEnabled(false);
    Timer1.setEnabled(false);
    Timer2.setEnabled(false);
    Timer3.setEnabled(false);
    PlaylistRunning = VFalse;
    if (QueueView* view = loadedWindow<QueueView>();
        view && view->AM() && view->AM()->PlayState() == MediaPlayer::mpPlaying)
        view->AM()->Stop();
    MoveThumb(16);
}

void frmMain::MediaOpened(MediaPlayer& player) {
    if (player.PlayState() == MediaPlayer::mpClosed) return;
    QPointer<MediaPlayer> opened(&player);
    quietOtherPlayers(player);
    if (!opened) return;
    MoveThumb(16);
    OpenComplete(long(Int(player.SelectionEnd())));
    Timer3.setEnabled(true);
}

void frmMain::quietOtherPlayers(MediaPlayer& opened) {
    // The face follows one player, and one file sounds at a time: a file that opens ends
    // what the other players play, and a film window left open closes.
    frmTemp* temp = Forms::find<frmTemp>();
    MediaPlayer* hidden = temp ? temp->MP.get() : nullptr;
    QueueView* view = loadedWindow<QueueView>();
    QPointer<MediaPlayer> am = view ? view->AM() : nullptr;
    VideoPlayerWindow* film = loadedWindow<VideoPlayerWindow>();
    const VBool running = PlaylistRunning;
    const VBool stopRequested = StopRequested;
    StopRequested = VTrue;
    PlaylistRunning = VFalse;
    if (hidden && hidden != &opened && hidden->PlayState() == MediaPlayer::mpPlaying)
        hidden->Stop();
    if (film && film->MP() != &opened) unloadWindow<VideoPlayerWindow>();
    // A run that played on in the queue's player ends with it.
    const bool runEnds = am && am != &opened && am->PlayState() == MediaPlayer::mpPlaying;
    if (runEnds) am->Stop();
    StopRequested = stopRequested;
    PlaylistRunning = runEnds ? VFalse : running;
}

void frmMain::AM_PlayStateChange(int oldState, int newState) {
    if (oldState != MediaPlayer::mpPlaying || newState != MediaPlayer::mpStopped) return;
    // A stop from mnuStop passes here too; Play_Done then finds the queue off.
    if (PlaylistRunning) {
        Play_Done();
        return;
    }
    // A row played alone in the queue's player has ended: the face goes back to idle.
    if (!inQueueGap_ && !AnyPlayerPlaying()) PlayStopped();
}

// ---- The queue ----

void frmMain::Play_Start() {
    if (skippingEntry_) {
        // Seek Next, passing over an entry, asks for the next one: the loop below starts it.
        restartPending_ = true;
        return;
    }
    // A queue with nothing playable would pass over itself for ever; once every entry
    // has had its turn several times over, the run ends as a stop does.
    // A queue with nothing playable in it ends at once, as the passing over would in the end:
    // a long list of missing files would otherwise hold the window for seconds.
    const bool anyPlayable =
        std::any_of(PlayQueue.cbegin(), PlayQueue.cend(), [](const QString& path) {
            const QString ext = extensionOf(path);
            return isQueueAudio(ext) || isQueueVideo(ext) || isAudioCD(ext);
        });
    if (!anyPlayable) {
        mnuStop();
        return;
    }
    const qsizetype limit = 4 * (PlayQueue.size() + 1);
    for (qsizetype skips = 0;; ++skips) {
        restartPending_ = false;
        entryFailed_ = false;
        playStartOnce();
        if (unloaded()) return;
        if (entryFailed_) {
            // A file the player refused has been told; the run goes on as at its end.
            if (!PlaylistRunning || !nextEntry()) return;
            restartPending_ = true;
        }
        if (!restartPending_) return;
        if (skips >= limit) {
            mnuStop();
            return;
        }
    }
}

void frmMain::playStartOnce() {
    // An index past the queue leaves CurrentFile as it is, so that file plays again.
    if (PlayIndex >= 0 && PlayIndex < PlayQueue.size()) CurrentFile = PlayQueue[PlayIndex];
    const QString ext = extensionOf(CurrentFile);

    if (isQueueAudio(ext)) {
        // Sound needs no window. The queue is off during the gap so that the old
        // player's stop is not taken for the end of the new entry; commands and timers
        // run meanwhile.
        unloadWindow<QueueView>();
        PlaylistRunning = VFalse;
        inQueueGap_ = true;
        Clock::get().wait(2000, [this] { return unloaded(); });
        inQueueGap_ = false;
        if (unloaded()) return;
        playInQueue(false);
        PlaylistRunning = VTrue;
    } else if (isQueueVideo(ext)) {
        PlaylistRunning = VTrue;
        playInQueue(true);
    } else if (isAudioCD(ext)) {
        if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->Stop();
        if (QueueView* view = loadedWindow<QueueView>(); view && view->AM()) view->AM()->Stop();
        CDReader* reader = Forms::touch<frmTempCD>().ReaderFor(CurrentFile);
        if (!reader || !waitForDisc(*reader)) return;
        // Unlike a single CD file, no 1 is taken off: "Track05" plays index 5.
        if (const auto track = CLng(Val(ParsePathParts(CurrentFile, QStringLiteral("b")).mid(5))))
            CurrentTrack = *track;
        Timer1.setEnabled(true);
        CDR_Timer.setEnabled(true);
        PlayDiscTrack(*reader);
        ShowTrackTitle();
        PlaylistRunning = VTrue;
    } else {
        // Anything else is passed over.
        skippingEntry_ = true;
        frmTemp::get().mnuSeekNext_Click();
        skippingEntry_ = false;
    }
}

void frmMain::playInQueue(bool showWindow) {
    QueueView* view = touchWindow<QueueView>();
    if (!view) return;
    QPointer<Form> window = formOf(view);
    QPointer<MediaPlayer> am = view->AM();
    if (!am) return;
    am->setFileName(CurrentFile);
    if (am && am->lastError() == MediaPlayer::ErrorFail) {
        // No end event ever comes for a file that never opened.
        MsgBoxShow(playErrorText(), Mb::Information | Mb::SetForeground);
        entryFailed_ = true;
        return;
    }
    // The queue's player starts as soon as it has the file.
    if (am) am->Play();
    if (showWindow && window) window->show();
}

bool frmMain::nextEntry() {
    if (!PlayerSettings::audioRandomize()) {
        ++PlayIndex;
        if (PlayIndex > PlayQueue.size() - 1) {
            if (!PlayerSettings::playlistLoop()) {
                mnuStop();
                return false;
            }
            PlayIndex = 0;
        }
    } else {
        // From 1 to the count: the first entry is never picked, and the count lies past
        // the queue, which replays what plays now.
        Randomize();
        PlayIndex = long(Int(double(List1.size()) * Rnd() + 1));
    }
    return true;
}

void frmMain::Play_Done() {
    if (!PlaylistRunning || !nextEntry()) return;
    if (PlaylistRunning) {
        Play_Start();
        ShowEntryTitle();
    }
}

void frmMain::ShowEntryTitle() {
    if (PlayIndex >= 0 && PlayIndex < PlayQueue.size())
        ParsePathParts(PlayQueue[PlayIndex], QStringLiteral("f"));
    const PathParts& parts = LastPathParts();
    Title(PlayerSettings::showExtension() ? parts.file : parts.base);
}

// ---- Audio CD ----

bool frmMain::waitForDisc(CDReader& reader) {
    QPointer<CDReader> guard(&reader);
    reader.Open();
    cdWaitStart_ = Clock::get().msecs();
    const bool ready = Clock::get().wait(
        15000, [this, &guard] { return unloaded() || (guard && guard->DiscPresent()); });
    if (!guard || unloaded()) return false;
    if (!ready) {
        MsgBoxShow(QStringLiteral("CD not ready (15 second timeout)."), Mb::Exclamation);
        return false;
    }
    if (!reader.DirectoryRead()) {
        MsgBoxShow(QStringLiteral("Unable to read CD directory."), Mb::Exclamation);
        return false;
    }
    return true;
}

void frmMain::PlayDiscTrack(CDReader& reader) {
    const QList<CDTrack> tracks = reader.Tracks();
    reader.PlayAudioTrack(int(CurrentTrack));
    const qint64 frames = CurrentTrack >= 0 && CurrentTrack < tracks.size()
                              ? CDReader::ToFrames(tracks[CurrentTrack].Length)
                              : 0;
    OpenComplete(long(CInt(double(frames) / 75)));
}

void frmMain::MoveThumb(int left) {
    const QRect before = imgPlayProgress.rect;
    imgPlayProgress.rect.moveLeft(left);
    update(before | imgPlayProgress.rect);
}

bool frmMain::AnyPlayerPlaying() const {
    auto playing = [](const MediaPlayer* mp) {
        return mp && mp->PlayState() == MediaPlayer::mpPlaying;
    };
    frmTemp* t = Forms::find<frmTemp>();
    VideoPlayerWindow* video = loadedWindow<VideoPlayerWindow>();
    QueueView* view = loadedWindow<QueueView>();
    return playing(t ? t->MP.get() : nullptr) || playing(video ? video->MP() : nullptr) ||
           playing(view ? view->AM() : nullptr);
}

void frmMain::ShowTrackTitle() {
    Title(QStringLiteral("Audio Track #") + QString::number(CurrentTrack + 1));
}

// ---- Timers ----

void frmMain::Timer1_Timer() {
    // A poll of the hidden player whose result nothing uses.
    calculatingPosition_ = true;
    if (MediaPlayer* mp = frmTemp::get().MP.get()) {
        const double length = mp->SelectionEnd() - mp->SelectionStart();
        [[maybe_unused]] const double percent = mp->CurrentPosition() / length * 100;
    }
    calculatingPosition_ = false;
}

void frmMain::Timer2_Timer() {
    EQVolume(randomLevel());
}

double frmMain::playerPosition() {
    QueueView* view = loadedWindow<QueueView>();
    MediaPlayer* am = view ? view->AM() : nullptr;
    VideoPlayerWindow* video = loadedWindow<VideoPlayerWindow>();
    MediaPlayer* film = video ? video->MP() : nullptr;
    MediaPlayer* hidden = frmTemp::get().MP.get();
    MediaPlayer* mp = nullptr;
    if (PlaylistRunning)
        mp = am;
    else if (isVideo(extensionOf(CurrentFile)))
        mp = film;
    else
        mp = hidden;
    // Outside a run a row may play alone in the queue's player: the face reads the player
    // that plays, not the one the file's class names.
    const auto playing = [](MediaPlayer* p) {
        return p && p->PlayState() == MediaPlayer::mpPlaying;
    };
    if (!PlaylistRunning && !playing(mp))
        for (MediaPlayer* other : {hidden, film, am})
            if (playing(other)) mp = other;
    return mp ? mp->CurrentPosition() : 0.0;
}

void frmMain::Timer3_Timer() {
    // The end of a file is not seen here: the players' events tell it.
    displayBusy_ = true;
    CDR_Timer.setEnabled(false);
    ShowPosition(playerPosition(), TrackLength);
    EQVolume(randomLevel());
    displayBusy_ = false;
}

void frmMain::CDR_Timer_Timer() {
    frmTempCD* cd = Forms::find<frmTempCD>();
    CDReader* reader = cd ? cd->CDReader.get() : nullptr;
    if (!reader) return;
    const QList<CDTrack> tracks = reader->Tracks();
    const qint64 position = CDReader::ToFrames(reader->Position());
    const qint64 start = CurrentTrack >= 0 && CurrentTrack < tracks.size()
                             ? CDReader::ToFrames(tracks[CurrentTrack].StartPosition)
                             : 0;
    const double seconds = double(position - start) / 75;
    ShowPosition(seconds, TrackLength);
    if (seconds >= TrackLength) {
        if (PlaylistRunning)
            Play_Done();
        else
            PlayStopped();
        Timer1.setEnabled(false);
        CDR_Timer.setEnabled(false);
    }
}

}  // namespace cantovel
