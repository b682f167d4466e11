// The Window menu's Audio CD control panel command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuAdvCDPlayer_Click() {}

}  // namespace cantovel
