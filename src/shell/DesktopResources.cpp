#include "shell/DesktopResources.h"

// The resources live in a static library: nothing would pull them into the program
// unless they are asked for by name.
static void initDesktopQrc() {
    Q_INIT_RESOURCE(desktop);
}

namespace cantovel {

void InitDesktopResources() {
    static const bool ready = (initDesktopQrc(), true);
    (void)ready;
}

QIcon CantovelIcon() {
    InitDesktopResources();
    QIcon icon;
    for (int size : {16, 32, 48, 256})
        icon.addFile(QStringLiteral(":/icons/cantovel-%1.png").arg(size), QSize(size, size));
    return icon;
}

}  // namespace cantovel
