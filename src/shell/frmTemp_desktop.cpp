// The Options menu's file types command and the Window menu's tray command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuAssociate_Click() {}

void frmTemp::mnuMinTray_Click() {}

}  // namespace cantovel
