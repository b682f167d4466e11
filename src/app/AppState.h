#pragma once
// Process-wide state of the running program.

#include "app/Runtime.h"

namespace cantovel {

// False from the start of the main window's load; True from the first line of its
// unload, and while every form is being unloaded. Windows that call back into the main
// window on their own unload read it to skip that.
extern VBool AppClosing;

// The application's title, used in messages and the settings key.
inline constexpr const char* AppTitle = "Cantovel";

}  // namespace cantovel
