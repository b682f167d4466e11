#pragma once
// The settings the player reads at each use (they are never cached).

#include "app/Runtime.h"
#include "app/Settings.h"

namespace cantovel {

namespace PlayerSettings {

// 1: the title shows the file name with its extension; anything else: without.
inline bool showExtension() {
    return Val(ReadAppSetting(QStringLiteral("Show Extension"), QStringLiteral("1"))) == 1;
}
// 1: a single file plays again at its end.
inline bool loopOther() {
    return Val(ReadAppSetting(QStringLiteral("Loop Other"), QStringLiteral("0"))) == 1;
}
inline bool readFlag(const char* name) {
    return CBool(ReadAppSetting(QLatin1String(name), QStringLiteral("False"))).value_or(false);
}
// A queue picks its entries at random.
inline bool audioRandomize() {
    return readFlag("Audio Randomize");
}
// A queue starts again after its last entry.
inline bool playlistLoop() {
    return readFlag("Playlist Loop");
}

}  // namespace PlayerSettings

}  // namespace cantovel
