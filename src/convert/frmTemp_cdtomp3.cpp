// The Conversions menu's CD to MP3 command.
#include "app/Forms.h"
#include "convert/frmCDtoMP3.h"
#include "player/frmTemp.h"

namespace cantovel {

void frmTemp::mnuCDtoMP3_Click() {
    frmCDtoMP3& form = Forms::touch<frmCDtoMP3>();
    // A window whose extractor could not start has unloaded itself already.
    if (Forms::find<frmCDtoMP3>() != &form) return;
    form.show();
    form.raise();
    form.activateWindow();
}

}  // namespace cantovel
