// The player's volume and the master volume: the four buttons with press and hold, mute
// and un-mute, and a machine without a mixer.
#include <gtest/gtest.h>

#include "app/Settings.h"
#include "player/PlayerWindows.h"
#include "support/FakeMediaPlayer.h"
#include "support/FakeVideoPlayerWindow.h"
#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VolumeTest : public MainWindowFixture {
  protected:
    // The centres of the four buttons: increase player, increase master, decrease player,
    // decrease master.
    static QPoint button(int index) {
        const QPoint places[4] = {{171, 45}, {264, 45}, {171, 55}, {264, 55}};
        return places[index];
    }
};

TEST_F(VolumeTest, APressStepsOnceAndAHeldButtonRepeats) {
    frmMain& m = load();
    m.PlayerVolume = 50;
    press(m, button(2));
    EXPECT_EQ(m.PlayerVolume, 49);
    // Nothing more for half a second, then twenty steps a second.
    clock().advance(499);
    EXPECT_EQ(m.PlayerVolume, 49);
    clock().advance(1);
    EXPECT_EQ(m.PlayerVolume, 48);
    clock().advance(100);
    EXPECT_EQ(m.PlayerVolume, 46);
    release(m, button(2));
    clock().advance(1000);
    EXPECT_EQ(m.PlayerVolume, 46);
    EXPECT_FALSE(m.tmrVolume.isEnabled());
}

TEST_F(VolumeTest, HoldingIncreaseAt100ChangesNothingAndTheTimerRunsOn) {
    frmMain& m = load();
    ASSERT_EQ(m.PlayerVolume, 100);
    press(m, button(0));
    clock().advance(2000);
    EXPECT_EQ(m.PlayerVolume, 100);
    EXPECT_TRUE(m.tmrVolume.isRunning());
    EXPECT_EQ(m.tmrVolume.interval(), 50);
    release(m, button(0));
}

TEST_F(VolumeTest, MasterStepsGoToTheMixerAtEveryTick) {
    frmMain& m = load();
    ASSERT_EQ(m.MasterVolume, 70);
    const int setsBefore = mixer->sets;
    press(m, button(1));
    EXPECT_EQ(mixer->volume, 71);
    clock().advance(600);
    EXPECT_EQ(m.MasterVolume, 74);
    EXPECT_EQ(mixer->volume, 74);
    EXPECT_EQ(mixer->sets - setsBefore, 4);
    release(m, button(1));
    // The player's steps write the master volume again too.
    mixer->volume = 10;
    click(m, button(2));
    EXPECT_EQ(mixer->volume, 74);
}

TEST_F(VolumeTest, AStepRepaintsBothReadOuts) {
    frmMain& m = load();
    click(m, button(3));
    const QImage shot = face(m);
    // Master 69: blank, 6, 9.
    EXPECT_EQ(part(shot, QRect(233, 42, 10, 16)), picture(m.clpDigits.GraphicCell(6)));
    EXPECT_EQ(part(shot, QRect(243, 42, 10, 16)), picture(m.clpDigits.GraphicCell(9)));
    EXPECT_EQ(part(shot, QRect(223, 42, 10, 16)), background(m, QRect(223, 42, 10, 16)));
    // The pressed face goes with the release.
    EXPECT_EQ(part(shot, QRect(256, 50, 16, 10)), background(m, QRect(256, 50, 16, 10)));
}

TEST_F(VolumeTest, UnMuteReturnsToTheLevelSeenAtStart) {
    frmMain& m = load();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Master Volume"), QString()), QStringLiteral("70"));
    for (int i = 0; i < 5; ++i) click(m, button(1));
    EXPECT_EQ(mixer->volume, 75);
    m.mnuMute();
    EXPECT_EQ(temp().mnuMute->text(), QStringLiteral("&Un-Mute"));
    EXPECT_EQ(mixer->volume, 0);
    EXPECT_EQ(m.MasterVolume, 75);
    m.mnuMute();
    EXPECT_EQ(temp().mnuMute->text(), QStringLiteral("&Mute"));
    EXPECT_EQ(mixer->volume, 70);
}

TEST_F(VolumeTest, TheMenuAndF9MuteToo) {
    frmMain& m = load();
    temp().mnuMute->trigger();
    EXPECT_EQ(mixer->volume, 0);
    m.Form_KeyDown(0x78, 0);
    EXPECT_EQ(mixer->volume, 70);
}

TEST_F(VolumeTest, WithoutAMixerTheMasterShows255AndNothingIsSaid) {
    mixer->present = false;
    frmMain& m = load();
    EXPECT_EQ(m.MasterVolume, 255);
    const QImage shot = face(m);
    const int digits[3] = {2, 5, 5};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(part(shot, QRect(223 + 10 * i, 42, 10, 16)),
                  picture(m.clpDigits.GraphicCell(digits[i])));
    click(m, button(1));
    EXPECT_EQ(m.MasterVolume, 255);
    m.mnuMute();
    m.mnuMute();
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

// A step sets the control volume on every player that is open; the balance goes to the
// hidden audio player only.
TEST_F(VolumeTest, StepsReachThePlayersAndTheBalanceTheAudioPlayer) {
    FakeMediaPlayer::install();
    FakeVideoPlayerWindow::install();
    frmMain& m = load();
    VideoPlayerWindow* video = touchWindow<VideoPlayerWindow>();
    ASSERT_TRUE(video && video->MP() && temp().MP);
    m.PlayerVolume = 50;
    press(m, button(2));
    release(m, button(2));
    EXPECT_EQ(temp().MP->Volume(), -5100);
    EXPECT_EQ(video->MP()->Volume(), -5100);

    // A drag 18 pixels left of the centre.
    m.imgBalance_MouseMove(0, 0, 2, 0);
    m.imgBalance_MouseMove(1, 0, 2 - 18, 0);
    EXPECT_EQ(m.imgBalance.Left(), 230);
    EXPECT_EQ(temp().MP->Balance(), -581);
    EXPECT_EQ(video->MP()->Balance(), 0);
}

TEST_F(VolumeTest, BalanceAndThumbMapOntoEachOther) {
    frmMain& m = load();
    m.SetBalance(0);
    EXPECT_EQ(m.imgBalance.Left(), 248);
    m.SetBalance(-1000);
    EXPECT_EQ(m.imgBalance.Left(), 217);
    EXPECT_EQ(m.GetBalance(), -1000);
    m.SetBalance(1000);
    EXPECT_EQ(m.imgBalance.Left(), 279);
    EXPECT_EQ(m.GetBalance(), 1000);
    m.imgBalance.setLeft(230);
    EXPECT_EQ(m.GetBalance(), -581);
}

}  // namespace
