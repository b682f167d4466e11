// Commands from a later start of the program.
#include "player/frmMain.h"
#include "shell/WindowHelpers.h"

namespace cantovel {

void frmMain::Form_LinkExecute(const QString& command) {
    // The link acknowledged the command already: a handled command never fails the sender.
    if (unloaded()) return;
    if (isMinimized()) showNormal();
    raise();
    if (command.isEmpty()) return;
    if (command == QLatin1String("[Restore App]")) {
        ForceFrontWindow(this, true);
        return;
    }
    QString path = command;
    if (path.startsWith(u'"')) path.remove(0, 1);
    if (path.endsWith(u'"')) path.chop(1);
    OpenHandedOver(path);
}

}  // namespace cantovel
