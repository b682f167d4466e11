// The Conversions menu's file commands.
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuWAVtoMP3_Click() {}

void frmTemp::mnuMP3toWAV_Click() {}

void frmTemp::mnuWAVBatch_Click() {}

}  // namespace cantovel
