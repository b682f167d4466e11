// The Window menu's Video CD player command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuAdvVideoCDPlayer_Click() {}

}  // namespace cantovel
