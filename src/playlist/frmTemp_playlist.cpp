// The File menu's playlist editor command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuPlaylist_Click() {}

}  // namespace cantovel
