// The CD audio player on a real disc image, with the null sound output.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>

#include "platform/cdaudio/CdAudioPlayer.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CDReaderAudioTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        env.set("CANTOVEL_AO", QByteArray("null"));
        image = DiscImage::build(dir.path(), {300, 150}).cuePath();
        ASSERT_FALSE(image.isEmpty());
    }
    ScopedEnv env;
    QTemporaryDir dir;
    QString image;
};

TEST_F(CDReaderAudioTest, PlaysATrackToItsEndAndStopsThere) {
    env.set("CANTOVEL_MPV_UNTIMED", QByteArray("1"));
    CdAudioPlayer player;
    ASSERT_TRUE(player.isValid());
    int finished = 0;
    QObject::connect(&player, &CdAudioPlayer::finished, [&] { ++finished; });
    ASSERT_TRUE(player.play(image, 300, 150));
    EXPECT_EQ(player.state(), CdAudioPlayer::Playing);
    ASSERT_TRUE(waitUntil([&] { return finished > 0; }));
    EXPECT_EQ(player.state(), CdAudioPlayer::Stopped);
    EXPECT_EQ(player.position(), 450);
    EXPECT_TRUE(player.errorText().isEmpty());
}

TEST_F(CDReaderAudioTest, PositionRunsWithTheSoundAndHoldsWhilePaused) {
    CdAudioPlayer player;
    ASSERT_TRUE(player.play(image, 0, 300));
    ASSERT_TRUE(waitUntil([&] { return player.position() >= 30; }, 5000));
    player.pause();
    waitUntil([] { return false; }, 100);
    const qint64 held = player.position();
    EXPECT_GE(held, 30);
    EXPECT_LT(held, 300);
    waitUntil([] { return false; }, 300);
    EXPECT_NEAR(double(player.position()), double(held), 2);
    player.resume();
    ASSERT_TRUE(waitUntil([&] { return player.position() >= held + 15; }, 5000));
    player.stop();
    const qint64 stopped = player.position();
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(player.position(), stopped);
    EXPECT_EQ(player.state(), CdAudioPlayer::Stopped);
}

TEST_F(CDReaderAudioTest, AMissingDiscEndsThePlayWithAReason) {
    CdAudioPlayer player;
    int finished = 0;
    QObject::connect(&player, &CdAudioPlayer::finished, [&] { ++finished; });
    ASSERT_TRUE(player.play(dir.path() + QStringLiteral("/none.cue"), 0, 75));
    ASSERT_TRUE(waitUntil([&] { return player.state() == CdAudioPlayer::Stopped; }));
    EXPECT_FALSE(player.errorText().isEmpty());
    EXPECT_EQ(finished, 0);
}

}  // namespace
