#pragma once
// The program's own icon and MIME package, built into the program, and the choices about
// the desktop it makes before and as the application object comes up.

#include <QIcon>

namespace cantovel {

// Makes the built-in desktop resources readable (":/icons", ":/mime").
void InitDesktopResources();
// The program's icon in its built-in sizes.
QIcon CantovelIcon();
// Gives every window the program's icon: the one the icon theme installs, else the
// built-in one. Called once the application object exists.
void SetApplicationIcon();

// Where conversions write unless the user picked a folder: the user's music folder, or
// the home folder where there is none (the program's own folder is not the user's).
QString DefaultOutputFolder();

// The frameless main window, the docking playlist and the saved positions need a window
// system that lets a window place itself, which Wayland does not: where an X server is
// reachable (XWayland) and the user has named no platform, X11 is asked for. True when
// the choice was made here; call before the application object is made.
bool PreferX11Platform();
// Takes the choice back out of the environment once the application object is made, so
// that programs started from here make their own.
void ForgetPlatformChoice(bool chosen);

}  // namespace cantovel
