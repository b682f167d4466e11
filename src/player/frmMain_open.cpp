// How a file enters the player.
#include "player/frmMain.h"

namespace cantovel {

void frmMain::OpenCommandLine(const QString& path) {
    List1 = QStringList{path};
    CurrentFile = path;
}

}  // namespace cantovel
