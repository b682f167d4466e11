// The Conversions menu's CD to MP3 command.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDtoMP3_Click() {}

}  // namespace cantovel
