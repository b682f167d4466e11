// The desktop these tests run on: a window manager that frames and maximises windows, as a
// user's does. Every test in this folder runs against it.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWidget>

#include "support/DesktopSession.h"

namespace {
const bool desktop = cantovel::test::requestDesktopSession();
}

TEST(WindowManager, FramesAndMaximisesAWindow) {
    REQUIRE_DESKTOP_SESSION();
    QWidget w;
    w.resize(200, 100);
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    // The frame comes from the manager, some time after the window is shown.
    QTRY_VERIFY(w.frameGeometry().height() > w.geometry().height());
    w.showMaximized();
    const QRect avail = QGuiApplication::primaryScreen()->availableGeometry();
    QTRY_COMPARE(w.frameGeometry().width(), avail.width());
}
