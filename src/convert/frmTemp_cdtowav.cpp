// The Conversions menu's CD to WAV command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDtoWAV_Click() {}

}  // namespace cantovel
