// The libmpv player on real files, with the null audio and video outputs.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <QWidget>
#include <memory>

#include "platform/PulseServer.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "support/AudioFixtures.h"
#include "support/RealMpv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

using Change = std::pair<int, int>;
using Changes = std::vector<Change>;

class MpvMediaPlayerTest : public ::testing::Test {
  protected:
    void SetUp() override { RealMpv::install(env); }
    void TearDown() override {
        player.reset();
        Components::clear();
    }

    MpvMediaPlayer& make() {
        player = std::make_unique<MpvMediaPlayer>();
        QObject::connect(player.get(), &MediaPlayer::OpenStateChange, [this](int o, int n) {
            opens.push_back({o, n});
            playStateAtOpen.push_back(player->PlayState());
            durationAtOpen.push_back(player->SelectionEnd());
        });
        QObject::connect(player.get(), &MediaPlayer::PlayStateChange, [this](int o, int n) {
            plays.push_back({o, n});
        });
        return *player;
    }
    QString path(const QString& name) const { return dir.filePath(name); }

    ScopedEnv env;
    QTemporaryDir dir;
    std::unique_ptr<MpvMediaPlayer> player;
    Changes opens, plays;
    std::vector<int> playStateAtOpen;
    std::vector<double> durationAtOpen;
};

// What the windows rely on when they open a file (refusals and whole plays are run through the
// main window on this player).
TEST_F(MpvMediaPlayerTest, AnOpenIsAnnouncedStoppedWithItsLengthAndTheNextOpenClosesItFirst) {
    ASSERT_TRUE(writeTone(path("tone.wav"), 3.0));
    ASSERT_TRUE(writeMp3Tone(path("tone.mp3"), 2.5));
    MpvMediaPlayer& mp = make();
    // A refused file goes from opening back to closed, with its reason.
    EXPECT_EQ(mp.setFileName(path("missing.mp3")), int(0x80004005u));
    EXPECT_EQ(mp.lastError(), MediaPlayer::ErrorFail);
    EXPECT_FALSE(mp.lastErrorDescription().isEmpty());
    EXPECT_EQ(opens, (Changes{{0, 5}, {5, 0}}));
    EXPECT_EQ(mp.PlayState(), MediaPlayer::mpClosed);

    opens.clear();
    EXPECT_EQ(mp.setFileName(path("tone.wav")), 0);
    EXPECT_EQ(mp.lastError(), 0);
    EXPECT_EQ(opens, (Changes{{0, 5}, {5, 6}}));
    // By the time the open is announced, the file reads as stopped with its length.
    EXPECT_EQ(playStateAtOpen.back(), MediaPlayer::mpStopped);
    EXPECT_NEAR(durationAtOpen.back(), 3.0, 0.01);
    // The position seeks and clamps.
    mp.setCurrentPosition(1.5);
    EXPECT_NEAR(mp.CurrentPosition(), 1.5, 0.001);
    mp.setCurrentPosition(-10);
    EXPECT_EQ(mp.CurrentPosition(), 0.0);
    mp.setCurrentPosition(99);
    EXPECT_NEAR(mp.CurrentPosition(), 3.0, 0.01);

    opens.clear();
    EXPECT_EQ(mp.setFileName(path("tone.mp3")), 0);
    EXPECT_EQ(opens, (Changes{{6, 0}, {0, 5}, {5, 6}}));
    EXPECT_EQ(plays, (Changes{{0, 6}}));
    // The encoder's padding may add a frame or two, never a whole second.
    EXPECT_GE(mp.SelectionEnd(), 2.45);
    EXPECT_LT(mp.SelectionEnd(), 2.6);
}

// A song through a sound server of the test's own, at the pace of the clock: what the user
// hears pauses and seeks.
TEST_F(MpvMediaPlayerTest, ASongPlaysThroughTheSoundServerInRealTime) {
    PulseServer pulse(dir.path());
    if (!pulse.installed) GTEST_SKIP() << "skipped: pulseaudio is missing (scripts/install-deps)";
    ASSERT_TRUE(pulse.running);
    env.set("CANTOVEL_AO", QByteArray("pulse"));
    env.set("CANTOVEL_MPV_UNTIMED", QByteArray());

    ASSERT_TRUE(writeTone(path("song.wav"), 2.0));
    MpvMediaPlayer& mp = make();
    ASSERT_EQ(mp.setFileName(path("song.wav")), 0);
    EXPECT_FALSE(mp.isValid());
    mp.Play();
    ASSERT_TRUE(Clock::get().wait(5000, [&] { return mp.CurrentPosition() > 0.3; }));
    mp.Pause();
    EXPECT_EQ(mp.PlayState(), MediaPlayer::mpPaused);
    const double held = mp.CurrentPosition();
    Clock::get().wait(400);
    EXPECT_NEAR(mp.CurrentPosition(), held, 0.05);
    EXPECT_LT(held, 1.5);

    mp.setCurrentPosition(1.5);
    mp.Play();
    ASSERT_TRUE(Clock::get().wait(5000, [&] { return mp.PlayState() == MediaPlayer::mpStopped; }));
    EXPECT_NEAR(mp.CurrentPosition(), mp.Duration(), 0.1);
    EXPECT_EQ(plays.back(), Change(2, 0));
    player.reset();
}

TEST_F(MpvMediaPlayerTest, VolumeBalanceAndPictureSizeReachMpv) {
    QWidget widget;
    MpvMediaPlayer& mp = make();
    mp.setVideoWidget(&widget);
    // mpv comes with the first file, and takes the volume set before it.
    EXPECT_FALSE(mp.isValid());
    mp.setVolume(-5000);
    // A mono sound only mpv plays.
    ASSERT_EQ(mp.setFileName("av://lavfi:sine=frequency=440:sample_rate=22050:duration=1"), 0);
    ASSERT_TRUE(mp.isValid());
    EXPECT_NEAR(mp.mpvProperty("volume").toDouble(), 50.0, 0.001);
    mp.setVolume(-20000);
    EXPECT_EQ(mp.Volume(), -10000);
    EXPECT_NEAR(mp.mpvProperty("volume").toDouble(), 0.0, 0.001);
    mp.setVolume(0);
    EXPECT_NEAR(mp.mpvProperty("volume").toDouble(), 100.0, 0.001);

    mp.setBalance(1500);
    EXPECT_EQ(mp.Balance(), 1000);
    mp.setBalance(-500);
    EXPECT_TRUE(mp.mpvProperty("af").contains("c1=0.5000*c1"));

    // A balance changed on a loaded mono file: it comes out as two channels and plays
    // through (a change of the output's format used to stall it).
    mp.Play();
    ASSERT_TRUE(Clock::get().wait(10000, [&] { return plays.size() >= 2; }));
    EXPECT_EQ(plays.back(), Change(2, 0));
    EXPECT_EQ(mp.mpvProperty("audio-out-params/channel-count"), "2");

    // At the centre the chain is empty again.
    mp.setBalance(0);
    EXPECT_EQ(mp.mpvProperty("af"), "");

    // A picture's size sizes the video widget.
    ASSERT_EQ(mp.setFileName("av://lavfi:testsrc=size=320x240:rate=25:duration=2"), 0);
    mp.Play();
    ASSERT_TRUE(Clock::get().wait(10000, [&] { return mp.ImageSourceWidth() > 0; }));
    EXPECT_EQ(mp.ImageSourceWidth(), 320);
    EXPECT_EQ(mp.ImageSourceHeight(), 240);
    EXPECT_EQ(widget.size(), QSize(320, 240));
    mp.setDisplaySize(MediaPlayer::mpDoubleSize);
    EXPECT_EQ(widget.size(), QSize(640, 480));
}

}  // namespace
