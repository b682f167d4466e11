// The Window menu's CDDB access player command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDDB_Click() {}

}  // namespace cantovel
