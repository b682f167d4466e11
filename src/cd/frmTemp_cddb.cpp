// The Window menu's CDDB access player command.
#include "app/Forms.h"
#include "cd/frmCDDBMain.h"
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDDB_Click() {
    frmCDDBMain& player = Forms::touch<frmCDDBMain>();
    player.show();
    player.raise();
    player.activateWindow();
}

}  // namespace cantovel
