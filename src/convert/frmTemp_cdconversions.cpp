// The Conversions menu's CD commands.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDtoWAV_Click() {}

void frmTemp::mnuCDtoMP3_Click() {}

}  // namespace cantovel
