// The Window menu's Video CD player command.
#include "app/Forms.h"
#include "player/frmTemp.h"
#include "video/frmVideoCDPlayer.h"

namespace cantovel {

void frmTemp::mnuAdvVideoCDPlayer_Click() {
    frmVideoCDPlayer& player = Forms::touch<frmVideoCDPlayer>();
    player.show();
    player.raise();
}

}  // namespace cantovel
