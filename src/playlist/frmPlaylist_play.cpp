// A double click on a row plays that row alone, outside any run.
#include <QPointer>

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
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "player/frmTempCD.h"
#include "playlist/frmPlaylist.h"

namespace cantovel {

using namespace MediaClasses;

namespace {

const QString kAsfQuestion = QStringLiteral(
    "The ASF extension can contain both audio and video content.  If the selected file is an "
    "audio file, click \"Yes\"; otherwise, if the selected file is video, click \"No\".");

// Plays a file in the queue's player; false when the player refuses it.
bool playInQueuePlayer(const QString& path, bool showWindow) {
    if (!showWindow) unloadWindow<QueueView>();
    QueueView* view = touchWindow<QueueView>();
    if (!view) return true;
    QPointer<Form> window = formOf(view);
    QPointer<MediaPlayer> am = view->AM();
    if (!am) return true;
    if (am->setFileName(path) == MediaPlayer::ErrorFail) return false;
    if (am) am->Play();
    if (am && am->lastError() == MediaPlayer::ErrorFail) return false;
    if (showWindow && window) window->show();
    return true;
}

void playVideoRow(const QString& path) {
    if (!playInQueuePlayer(path, true))
        MsgBoxShow(QStringLiteral("An error occurred attempting to play the current file.  The "
                                  "file is invalid, corrupt, or an unsupported format."),
                   Mb::Information);
}

void playAudioRow(const QString& path) {
    if (!playInQueuePlayer(path, false))
        MsgBoxShow(QStringLiteral("An error occurred attempting to load \"") + path +
                       QStringLiteral("\".  The file is most likely corrupt, invalid, or an "
                                      "unsupported format."),
                   Mb::Information);
}

void playDiscRow(frmMain& main, const QString& path) {
    if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->Stop();
    if (QueueView* view = loadedWindow<QueueView>(); view && view->AM()) view->AM()->Stop();
    QPointer<CDReader> reader = Forms::touch<frmTempCD>().CDReader.get();
    if (!reader) return;
    reader->Open();
    if (!Clock::get().wait(15000, [&reader] { return reader && reader->DiscPresent(); })) {
        if (reader)
            MsgBoxShow(QStringLiteral("CD not ready (15 second timeout)."), Mb::Exclamation);
        return;
    }
    if (!reader->DirectoryRead()) {
        MsgBoxShow(QStringLiteral("Unable to read CD directory."), Mb::Exclamation);
        return;
    }
    // As in a run, "Track05" plays index 5.
    main.CurrentTrack = long(Val(ParsePathParts(path, QStringLiteral("b")).mid(5)));
    main.Timer1.setEnabled(true);
    main.CDR_Timer.setEnabled(true);
    main.PlayDiscTrack(*reader);
    main.ShowTrackTitle();
}

}  // namespace

void frmPlaylist::lstPlayList_DblClick() {
    frmMain* main = frmMain::instance();
    const int index = lstPlayList->ListIndex();
    if (!main || index < 0 || index >= main->List1.size()) return;
    // A row played alone: nothing follows it.
    main->StopRequested = VTrue;
    main->PlaylistRunning = VFalse;
    main->CurrentFile = main->List1[index];
    const QString path = main->CurrentFile;
    const QString ext = extensionOf(path);
    if (!isAudioCD(ext))
        main->Title(ParsePathParts(
            path, PlayerSettings::showExtension() ? QStringLiteral("f") : QStringLiteral("b")));

    if (ext == QLatin1String(".asf")) {
        const int answer = MsgBoxShow(kAsfQuestion, Mb::YesNo | Mb::Question);
        if (answer == Mb::Yes)
            playAudioRow(path);
        else if (answer == Mb::No)
            playVideoRow(path);
    } else if (isQueueAudio(ext)) {
        playAudioRow(path);
    } else if (isQueueVideo(ext)) {
        playVideoRow(path);
    } else if (isAudioCD(ext)) {
        playDiscRow(*main, path);
    }
    // Anything else has nothing to play it.
}

}  // namespace cantovel
