#pragma once
// The program's own icon and MIME package, built into the program.

#include <QIcon>

namespace cantovel {

// Makes the built-in desktop resources readable (":/icons", ":/mime").
void InitDesktopResources();
// The program's icon in its built-in sizes.
QIcon CantovelIcon();

}  // namespace cantovel
