// frmTemp's transport menus, the seek commands and the events of the hidden player.
#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "platform/cdreader/CDReader.h"
#include "player/MediaClasses.h"
#include "player/PlayerSettings.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "player/frmTempCD.h"

namespace cantovel {

void frmTemp::wireTransport() {
    auto forward = [this](QAction* action, void (frmTemp::*handler)()) {
        connect(action, &QAction::triggered, this, handler);
    };
    forward(mnuPlay, &frmTemp::mnuPlay_Click);
    forward(mnuStop, &frmTemp::mnuStop_Click);
    forward(mnuPause, &frmTemp::mnuPause_Click);
    forward(mnuPlayCurrent, &frmTemp::mnuPlayCurrent_Click);
    forward(mnuRunPlaylist, &frmTemp::mnuRunPlaylist_Click);
    forward(mnuDelete, &frmTemp::mnuDelete_Click);
    forward(mnuSeekNext, &frmTemp::mnuSeekNext_Click);
    forward(mnuSeekPrev, &frmTemp::mnuSeekPrev_Click);
    // The video pop-up offers the same commands.
    forward(popVidPlay, &frmTemp::mnuPlay_Click);
    forward(popVidPlayCurrent, &frmTemp::mnuPlayCurrent_Click);
    forward(popVidPause, &frmTemp::mnuPause_Click);
    for (int i = 0; i < int(mnuFileMRU.size()); ++i)
        connect(mnuFileMRU[i], &QAction::triggered, this, [this, i] { mnuFileMRU_Click(i); });
}

void frmTemp::mnuPlay_Click() {
    if (frmMain* main = frmMain::instance()) main->mnuPlay();
}

void frmTemp::mnuStop_Click() {
    if (frmMain* main = frmMain::instance()) {
        main->StopRequested = VTrue;
        main->mnuStop();
    }
}

void frmTemp::mnuPause_Click() {
    if (frmMain* main = frmMain::instance()) main->mnuPause();
}

void frmTemp::mnuPlayCurrent_Click() {
    if (frmMain* main = frmMain::instance()) main->mnuPlayCurrent();
}

void frmTemp::mnuRunPlaylist_Click() {
    if (frmMain* main = frmMain::instance()) main->mnuRunPlaylist();
}

void frmTemp::mnuDelete_Click() {
    if (frmMain* main = frmMain::instance()) main->mnuDelete();
}

void frmTemp::mnuFileMRU_Click(int index) {
    if (frmMain* main = frmMain::instance()) main->mnuMRU(index);
}

void frmTemp::mnuSeekNext_Click() {
    seek(+1);
}

void frmTemp::mnuSeekPrev_Click() {
    seek(-1);
}

void frmTemp::seek(int step) {
    frmMain* main = frmMain::instance();
    if (!main) return;
    const QString ext = MediaClasses::extensionOf(main->CurrentFile);

    if (main->PlaylistRunning) {
        if (!PlayerSettings::audioRandomize()) {
            // Both ends wrap, whatever Playlist Loop says.
            main->PlayIndex += step;
            const long last = long(main->PlayQueue.size()) - 1;
            if (main->PlayIndex > last) main->PlayIndex = 0;
            if (main->PlayIndex < 0) main->PlayIndex = last;
        } else {
            Randomize();
            main->PlayIndex = long(Int(main->List1.size() * Rnd() + 1));
        }
        main->Play_Start();
        main->ShowEntryTitle();
        return;
    }

    if (!MediaClasses::isAudioCD(ext)) return;  // a single file has no next entry
    frmTempCD* cd = Forms::find<frmTempCD>();
    CDReader* reader = cd ? cd->CDReader.get() : nullptr;
    if (!reader) return;
    const QList<CDTrack> tracks = reader->Tracks();
    main->CurrentTrack += step;
    if (main->CurrentTrack > long(tracks.size()) - 1) main->CurrentTrack = 0;
    if (main->CurrentTrack < 0) main->CurrentTrack = long(tracks.size()) - 1;
    main->PlayDiscTrack(*reader);
    main->CDR_Timer.setEnabled(true);
    main->ShowTrackTitle();
}

void frmTemp::MP_OpenStateChange(int, int) {
    if (frmMain* main = frmMain::instance(); main && MP) main->MediaOpened(*MP);
}

void frmTemp::MP_PlayStateChange(int, int) {
    frmMain* main = frmMain::instance();
    if (!main || !MP) return;
    switch (MP->PlayState()) {
        case MediaPlayer::mpStopped:
            if (main->StopRequested) {
                main->PlayStopped();
            } else if (PlayerSettings::loopOther()) {
                MP->Play();
                main->OpenComplete(long(Int(MP->SelectionEnd())));  // repaints
            } else {
                main->PlayStopped();
            }
            break;
        case MediaPlayer::mpPaused:
            main->Timer1.setEnabled(false);
            break;
        default:
            main->Timer1.setEnabled(true);
            break;
    }
}

}  // namespace cantovel
