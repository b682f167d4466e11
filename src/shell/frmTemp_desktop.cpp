// The Options menu's file types command and the Window menu's tray command.
#include "app/Forms.h"
#include "player/frmTemp.h"
#include "shell/frmAssociate.h"
#include "shell/frmTrayIcon.h"

namespace cantovel {

void frmTemp::mnuAssociate_Click() {
    frmAssociate& window = Forms::touch<frmAssociate>();
    window.show();
    window.raise();
    window.activateWindow();
}

void frmTemp::mnuMinTray_Click() {
    Forms::touch<frmTrayIcon>().GoToTray();
}

}  // namespace cantovel
