// Stand-ins for procedures of the playback session and the transport commands, which
// come with the player core; this file goes when they land.
#include "app/Forms.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"

namespace cantovel {

void frmMain::imgButton_Click(int Index) {
    frmTemp& temp = Forms::touch<frmTemp>();
    if (Index == 5) emit temp.mnuPlay->triggered();
}

void frmMain::mnuStop() {}

void frmMain::Process_DROPFILES() {}

bool frmMain::AnyPlayerPlaying() const {
    return false;
}

void frmMain::MoveThumb(int left) {
    imgPlayProgress.setLeft(left);
    update();
}

void frmMain::SeekFromThumb() {}

}  // namespace cantovel
