#pragma once
// A real X server and window manager for the tests where the window system decides the
// outcome (maximising, focus, stacking, the tray, drops, video output). A test executable
// asks for one with a static initializer; the test main then starts Xvfb and openbox before
// the application object exists, so Qt runs on xcb against them for the whole process.

#include <gtest/gtest.h>

#include <QString>

namespace cantovel::test {

// Call from a static initializer of the executable's tests:
//   static const bool desktop = cantovel::test::requestDesktopSession();
bool requestDesktopSession();

// The test main calls this before making the application object.
void startRequestedDesktopSession();

// Empty when the session is up, else one line saying why it is not.
QString desktopSessionMissing();

}  // namespace cantovel::test

// Skips the calling test, saying why, where no X server or window manager could be had.
#define REQUIRE_DESKTOP_SESSION()                                       \
    do {                                                                \
        const QString why_ = ::cantovel::test::desktopSessionMissing(); \
        if (!why_.isEmpty()) GTEST_SKIP() << why_.toStdString();        \
    } while (false)
