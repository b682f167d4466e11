// The Window menu's Audio CD control panel command.
#include "app/Forms.h"
#include "cd/frmCDPlayer.h"
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuAdvCDPlayer_Click() {
    frmCDPlayer& player = Forms::touch<frmCDPlayer>();
    player.show();
    player.raise();
    player.activateWindow();
}

}  // namespace cantovel
