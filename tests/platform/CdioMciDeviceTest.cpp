// The CD audio device over libcdio, on a disc image, through CdBase as its host uses it.

#include "cd/CdBase.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "platform/clock/QtClock.h"
#include "platform/mci/CdioMciDevice.h"
#include "support/AppTest.h"
#include "support/DiscImage.h"
#include "support/ScopedEnv.h"

namespace cantovel::test {
namespace {

class CdioMciDeviceTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        env.set("CANTOVEL_AO", QByteArray("null"));
        disc = DiscImage::buildSeconds(tempDir(), {20, 30, 10});
        ASSERT_TRUE(disc.ok());
    }
    ScopedEnv env;
    DiscImage disc;
};

TEST_F(CdioMciDeviceTest, TracksInMsfFromTheLeadInWithTheLastOneFrameShort) {
    CdioMciDevice mci(disc.cuePath());
    EXPECT_EQ(mci.Mode(), MciDevice::mciModeNotOpen);
    EXPECT_EQ(mci.Tracks(), 0);
    mci.setCommand("Open");
    EXPECT_EQ(mci.Mode(), MciDevice::mciModeStop);
    ASSERT_EQ(mci.Tracks(), 3);
    mci.setTrack(1);
    EXPECT_EQ(mci.TrackPosition(), FramesToMsf(150));
    EXPECT_EQ(mci.TrackLength(), FramesToMsf(20 * 75));
    mci.setTrack(3);
    EXPECT_EQ(MsfToFrames(mci.TrackPosition()), 150 + 50 * 75);
    EXPECT_EQ(MsfToFrames(mci.TrackLength()), 10 * 75 - 1);
    EXPECT_EQ(mci.Position(), FramesToMsf(150));
    mci.setCommand("Next");
    EXPECT_EQ(MsfToFrames(mci.Position()), 150 + 20 * 75);
    mci.setCommand("Eject");
    EXPECT_EQ(mci.Mode(), MciDevice::mciModeReady);
    mci.setCommand("Close");
    EXPECT_EQ(mci.Mode(), MciDevice::mciModeNotOpen);
}

TEST_F(CdioMciDeviceTest, TheFirstDriveIsOpenedAndTheDiscIdIsTheCddbOne) {
    env.set("CANTOVEL_CD_IMAGES", disc.cuePath());
    Components::provideService<CdDrives>(std::make_shared<LibcdioCdDrives>());
    Components::provideFactory<MciDevice>([] { return std::make_unique<CdioMciDevice>(); });
    CdBase cd;
    // Digit sums of 2, 22 and 52 seconds: 2 + 4 + 7; 60 seconds of three tracks.
    EXPECT_EQ(cd.Cdid(), "0d003c03");
    EXPECT_EQ(cd.MMControl1()->Mode(), MciDevice::mciModeNotOpen);  // closed again
}

TEST_F(CdioMciDeviceTest, PlayingATrackMovesThePositionAndPauseHoldsIt) {
    Components::provideService<Clock>(std::make_shared<QtClock>());
    CdioMciDevice mci(disc.cuePath());
    mci.setCommand("Open");
    mci.setTrack(2);
    mci.setFrom(mci.TrackPosition());
    mci.setTo(FramesToMsf(MsfToFrames(mci.TrackPosition()) + 75 * 5));
    mci.setCommand("Play");
    EXPECT_EQ(mci.Mode(), MciDevice::mciModePlay);
    Clock::get().wait(5000, [&] { return MsfToFrames(mci.Position()) > 150 + 20 * 75 + 30; });
    const qint64 at = MsfToFrames(mci.Position());
    EXPECT_GT(at, 150 + 20 * 75);
    EXPECT_LT(at, 150 + 25 * 75);
    mci.setCommand("Pause");
    EXPECT_EQ(mci.Mode(), MciDevice::mciModePause);
    mci.setCommand("Stop");
    EXPECT_EQ(mci.Mode(), MciDevice::mciModeStop);
    EXPECT_GE(MsfToFrames(mci.Position()), at);
}

}  // namespace
}  // namespace cantovel::test
