#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include "shell/WindowHelpers.h"

using namespace cantovel;

TEST(WindowHelpers, CenteringArithmetic) {
    EXPECT_EQ(centeredPosition(QRect(0, 0, 1024, 768), QSize(300, 175)), QPoint(362, 296));
    EXPECT_EQ(centeredPosition(QRect(1920, 0, 1280, 1024), QSize(301, 176)), QPoint(2409, 424));
    // A window larger than the screen overhangs on both sides.
    EXPECT_EQ(centeredPosition(QRect(0, 0, 200, 100), QSize(300, 175)), QPoint(-50, -37));
}

TEST(WindowHelpers, CenterFormUsesTheWindowsScreen) {
    QWidget w(nullptr, Qt::FramelessWindowHint);
    w.resize(300, 175);
    w.show();
    CenterForm(&w);
    const QRect screen = w.screen()->geometry();
    EXPECT_EQ(w.frameGeometry().center().x(), screen.center().x());
    EXPECT_LE(std::abs(w.frameGeometry().center().y() - screen.center().y()), 1);
    CenterForm(nullptr);
}

TEST(WindowHelpers, FormOnTopKeepsVisibility) {
    QWidget shown, hidden;
    shown.show();
    FormOnTop(&shown, true);
    FormOnTop(&hidden, true);
    EXPECT_TRUE(shown.windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(shown.isVisible());
    EXPECT_TRUE(hidden.windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_FALSE(hidden.isVisible());
    FormOnTop(&shown, false);
    EXPECT_FALSE(shown.windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(shown.isVisible());
    FormOnTop(nullptr, true);
}

TEST(WindowHelpers, ForceFrontWindowRestoresOnlyWhenAsked) {
    ForceFrontWindow(nullptr, true);  // nothing, and no crash

    QWidget other;
    other.show();
    other.activateWindow();
    QApplication::processEvents();

    QWidget w;
    w.showMinimized();
    QApplication::processEvents();
    ForceFrontWindow(&w, false);
    EXPECT_TRUE(w.isMinimized());
    EXPECT_TRUE(w.isVisible());

    ForceFrontWindow(&w, true);
    EXPECT_FALSE(w.isMinimized());
    EXPECT_TRUE(w.isVisible());

    QWidget hidden;
    ForceFrontWindow(&hidden, true);
    EXPECT_TRUE(hidden.isVisible());
}
