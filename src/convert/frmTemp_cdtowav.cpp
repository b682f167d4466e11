// The Conversions menu's CD to WAV command.
#include "app/Forms.h"
#include "convert/frmCDtoWAV.h"
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDtoWAV_Click() {
    frmCDtoWAV& window = Forms::touch<frmCDtoWAV>();
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace cantovel
