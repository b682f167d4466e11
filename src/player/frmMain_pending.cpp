// Stand-ins for procedures that come with the transport commands and the media player;
// this file goes when they land.
#include <algorithm>

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

void frmMain::imgPlayProgress_MouseMove(Qt::MouseButtons buttons, int dx) {
    if (!(buttons & Qt::LeftButton) || CurrentFile.isEmpty()) return;
    MoveThumb(std::clamp(imgPlayProgress.Left() + dx, 16, 268 - imgPlayProgress.Width()));
}

}  // namespace cantovel
