// The player's volume and the master volume: the four buttons with press and hold, mute and
// un-mute, the balance, and a machine without a mixer.
#include <gtest/gtest.h>

#include <QTest>

#include "app/ProductionComponents.h"
#include "app/Settings.h"
#include "player/PlayerWindows.h"
#include "player/VideoPlayerWindow.h"
#include "support/FakeMediaPlayer.h"
#include "support/MainWindowFixture.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// The centres of the four buttons.
const QPoint IncPlayer(171, 45), IncMaster(264, 45), DecPlayer(171, 55), DecMaster(264, 55);

class VolumeTest : public MainWindowFixture {
  protected:
    // The three digits of the master volume's read-out show `digits`.
    void expectMasterDigits(frmMain& m, const QList<int>& digits) {
        const QImage shot = face(m);
        for (int i = 0; i < 3; ++i) {
            const QRect at(223 + 10 * i, 42, 10, 16);
            EXPECT_EQ(part(shot, at), digits[i] < 0 ? background(m, at)
                                                    : picture(m.clpDigits.GraphicCell(digits[i])))
                << i;
        }
    }
};

TEST_F(VolumeTest, APressStepsOnceAndAHeldButtonRepeatsUpToTheEnd) {
    frmMain& m = load();
    ASSERT_EQ(m.PlayerVolume, 100);
    press(m, IncPlayer);
    clock().advance(2000);
    EXPECT_EQ(m.PlayerVolume, 100);
    release(m, IncPlayer);

    m.PlayerVolume = 50;
    press(m, DecPlayer);
    EXPECT_EQ(m.PlayerVolume, 49);
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
}

TEST_F(VolumeTest, MasterStepsReachTheMixerShowAndMuteReturnsToTheLevelSeenAtStart) {
    frmMain& m = load();
    ASSERT_EQ(m.MasterVolume, 70);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Master Volume"), QString()), QStringLiteral("70"));
    click(m, DecMaster);
    expectMasterDigits(m, {-1, 6, 9});
    // The pressed face goes with the release.
    EXPECT_EQ(part(face(m), QRect(256, 50, 16, 10)), background(m, QRect(256, 50, 16, 10)));
    const int setsBefore = mixer->sets;
    press(m, IncMaster);
    clock().advance(600);
    EXPECT_EQ(m.MasterVolume, 73);
    EXPECT_EQ(mixer->volume, 73);
    EXPECT_EQ(mixer->sets - setsBefore, 4);
    release(m, IncMaster);
    // The player's steps write the master volume again too.
    mixer->volume = 10;
    click(m, DecPlayer);
    EXPECT_EQ(mixer->volume, 73);

    temp().mnuMute->trigger();
    EXPECT_EQ(temp().mnuMute->text(), QStringLiteral("&Un-Mute"));
    EXPECT_EQ(mixer->volume, 0);
    EXPECT_EQ(m.MasterVolume, 73);
    QTest::keyClick(&m, Qt::Key_F9);
    EXPECT_EQ(temp().mnuMute->text(), QStringLiteral("&Mute"));
    EXPECT_EQ(mixer->volume, 70);
}

TEST_F(VolumeTest, WithoutAMixerTheMasterShows255AndNothingIsSaid) {
    mixer->present = false;
    frmMain& m = load();
    expectMasterDigits(m, {2, 5, 5});
    click(m, IncMaster);
    EXPECT_EQ(m.MasterVolume, 255);
    temp().mnuMute->trigger();
    temp().mnuMute->trigger();
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

// A step sets the control volume on every player that is open; the balance goes to the
// hidden audio player only.
TEST_F(VolumeTest, StepsReachThePlayersAndTheBalanceTheAudioPlayer) {
    FakeMediaPlayer::install();
    registerProgramWindows();
    frmMain& m = load();
    VideoPlayerWindow* video = touchWindow<VideoPlayerWindow>();
    ASSERT_TRUE(video && video->MP() && temp().MP);
    m.PlayerVolume = 50;
    click(m, DecPlayer);
    EXPECT_EQ(temp().MP->Volume(), -5100);
    EXPECT_EQ(video->MP()->Volume(), -5100);

    EXPECT_EQ(m.imgBalance.Left(), 248);
    m.imgBalance_MouseMove(0, 0, 2, 0);
    m.imgBalance_MouseMove(1, 0, 2 - 18, 0);  // a drag 18 pixels left of the centre
    EXPECT_EQ(m.imgBalance.Left(), 230);
    EXPECT_EQ(temp().MP->Balance(), -581);
    EXPECT_EQ(video->MP()->Balance(), 0);
    m.imgBalance_MouseMove(1, 0, -500, 0);
    EXPECT_EQ(m.imgBalance.Left(), 217);
    EXPECT_EQ(temp().MP->Balance(), -1000);
    m.imgBalance_MouseMove(1, 0, 500, 0);
    EXPECT_EQ(m.imgBalance.Left(), 279);
    EXPECT_EQ(temp().MP->Balance(), 1000);
    m.SetBalance(-1000);
    EXPECT_EQ(m.imgBalance.Left(), 217);
}

}  // namespace
