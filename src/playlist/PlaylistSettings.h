#pragma once
// The playlist editor's settings, read at each use.

#include "app/Runtime.h"
#include "app/Settings.h"

namespace cantovel {
namespace PlaylistSettings {

inline bool flag(const char* name, bool defaultValue) {
    return CBool(ReadAppSetting(QLatin1String(name), CStr(defaultValue))).value_or(defaultValue);
}
// 0 below, 1 above, 2 left, 3 right of the main window, 5 none.
inline int dockSetting() {
    return int(Val(ReadAppSetting(QStringLiteral("Dock Playlist Window"), QStringLiteral("0"))));
}

}  // namespace PlaylistSettings
}  // namespace cantovel
