// The player's volume and the master volume on a loaded main window: the four buttons with
// press and hold, mute and un-mute.
#include <gtest/gtest.h>

#include <QTest>

#include "app/Settings.h"
#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// The centres of the four buttons.
const QPoint IncPlayer(171, 45), IncMaster(264, 45), DecPlayer(171, 55), DecMaster(264, 55);

class VolumeTest : public MainWindowFixture {};

TEST_F(VolumeTest, APressStepsOnceAHeldButtonRepeatsToTheEndAndMuteReturnsToTheLevelAtStart) {
    frmMain& m = load();
    ASSERT_EQ(m.PlayerVolume, 100);
    press(m, IncPlayer);
    clock().advance(2000);
    EXPECT_EQ(m.PlayerVolume, 100);
    release(m, IncPlayer);

    m.PlayerVolume = 50;
    mixer->volume = 10;
    press(m, DecPlayer);
    EXPECT_EQ(m.PlayerVolume, 49);
    EXPECT_EQ(mixer->volume, 70);  // the player's steps write the master volume again
    // Nothing more for half a second, then twenty steps a second.
    clock().advance(499);
    EXPECT_EQ(m.PlayerVolume, 49);
    clock().advance(1);
    EXPECT_EQ(m.PlayerVolume, 48);
    clock().advance(100);
    EXPECT_EQ(m.PlayerVolume, 46);
    release(m, DecPlayer);
    clock().advance(1000);
    EXPECT_EQ(m.PlayerVolume, 46);
    EXPECT_FALSE(m.tmrVolume.isEnabled());

    ASSERT_EQ(m.MasterVolume, 70);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Master Volume"), QString()), QStringLiteral("70"));
    click(m, DecMaster);
    // The read-out shows " 69", and the pressed face goes with the release.
    const QImage shot = face(m);
    EXPECT_EQ(part(shot, QRect(223, 42, 10, 16)), background(m, QRect(223, 42, 10, 16)));
    EXPECT_EQ(part(shot, QRect(233, 42, 10, 16)), picture(m.clpDigits.GraphicCell(6)));
    EXPECT_EQ(part(shot, QRect(243, 42, 10, 16)), picture(m.clpDigits.GraphicCell(9)));
    EXPECT_EQ(part(shot, QRect(256, 50, 16, 10)), background(m, QRect(256, 50, 16, 10)));
    const int setsBefore = mixer->sets;
    press(m, IncMaster);
    clock().advance(600);
    EXPECT_EQ(m.MasterVolume, 73);
    EXPECT_EQ(mixer->volume, 73);
    EXPECT_EQ(mixer->sets - setsBefore, 4);
    release(m, IncMaster);

    temp().mnuMute->trigger();
    EXPECT_EQ(temp().mnuMute->text(), QStringLiteral("&Un-Mute"));
    EXPECT_EQ(mixer->volume, 0);
    EXPECT_EQ(m.MasterVolume, 73);
    QTest::keyClick(&m, Qt::Key_F9);
    EXPECT_EQ(temp().mnuMute->text(), QStringLiteral("&Mute"));
    EXPECT_EQ(mixer->volume, 70);
}

}  // namespace
