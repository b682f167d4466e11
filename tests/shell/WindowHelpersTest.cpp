#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>

#include "shell/WindowHelpers.h"

using namespace cantovel;

TEST(WindowHelpers, CentringAndBringingToTheFront) {
    EXPECT_EQ(centeredPosition(QRect(0, 0, 1024, 768), QSize(300, 175)), QPoint(362, 296));
    EXPECT_EQ(centeredPosition(QRect(1920, 0, 1280, 1024), QSize(301, 176)), QPoint(2409, 424));
    // A window larger than the screen overhangs on both sides.
    EXPECT_EQ(centeredPosition(QRect(0, 0, 200, 100), QSize(300, 175)), QPoint(-50, -37));

    ForceFrontWindow(nullptr, true);  // nothing, and no crash
    QWidget w;
    w.showMinimized();
    QApplication::processEvents();
    ForceFrontWindow(&w, false);
    EXPECT_TRUE(w.isMinimized());
    ForceFrontWindow(&w, true);
    EXPECT_FALSE(w.isMinimized());
    EXPECT_TRUE(w.isVisible());
    QWidget hidden;
    ForceFrontWindow(&hidden, true);
    EXPECT_TRUE(hidden.isVisible());
    CenterForm(nullptr);
    FormOnTop(nullptr, true);
}
