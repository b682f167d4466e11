// What the program settles with the desktop as it starts: the window system it asks for
// and its own icon.
#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>

#include "shell/DesktopResources.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// The platform variable as a start would find it, with DISPLAY and the Wayland socket.
QByteArray chosenWith(const char* platform, const char* display, const char* wayland) {
    ScopedEnv env;
    for (auto [name, value] :
         {std::pair{"QT_QPA_PLATFORM", platform}, std::pair{"DISPLAY", display},
          std::pair{"WAYLAND_DISPLAY", wayland}}) {
        env.set(name, QByteArray());
        if (value)
            qputenv(name, value);
        else
            qunsetenv(name);
    }
    const bool chosen = PreferX11Platform();
    const QByteArray seen = qgetenv("QT_QPA_PLATFORM");
    ForgetPlatformChoice(chosen);
    // Programs started later see the user's own setting again.
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), QByteArray(platform ? platform : ""));
    return seen;
}

}  // namespace

TEST(DesktopStart, AWaylandSessionWithXWaylandRunsOnX11UnlessTheUserChose) {
    EXPECT_EQ(chosenWith(nullptr, ":0", "wayland-0"), "xcb");
    EXPECT_EQ(chosenWith("", ":0", "wayland-0"), "xcb");
    // The user's choice stands, and so does Wayland where no X server is reachable.
    EXPECT_EQ(chosenWith("wayland", ":0", "wayland-0"), "wayland");
    EXPECT_EQ(chosenWith(nullptr, nullptr, "wayland-0"), "");
}

TEST(DesktopStart, TheBuiltInIconHasItsPicturesThoughTheyLiveInALibrary) {
    // The pictures reach the program only when their resources are asked for by name.
    const QImage icon = CantovelIcon().pixmap(32, 32).toImage();
    ASSERT_FALSE(icon.isNull());
    EXPECT_GT(qAlpha(icon.pixel(16, 16)), 0);
}
