// The scripted player the scenario tests rely on must keep the real one's event order.
#include <gtest/gtest.h>

#include <memory>

#include "platform/Components.h"
#include "support/FakeClock.h"
#include "support/FakeMediaPlayer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

using Changes = std::vector<std::pair<int, int>>;

class FakeMediaPlayerTest : public ::testing::Test {
  protected:
    void SetUp() override {
        Components::provideService<Clock>(clock);
        FakeMediaPlayer::install();
        FakeMediaPlayer::setLength("song.mp3", 10.0);
        auto made = Components::create<MediaPlayer>();
        player.reset(static_cast<FakeMediaPlayer*>(made.release()));
        QObject::connect(player.get(), &MediaPlayer::OpenStateChange, [this](int o, int n) {
            opens.push_back({o, n});
        });
        QObject::connect(player.get(), &MediaPlayer::PlayStateChange, [this](int o, int n) {
            plays.push_back({o, n});
        });
    }

    void TearDown() override {
        player.reset();
        Components::clear();
    }

    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::unique_ptr<FakeMediaPlayer> player;
    Changes opens, plays;
};

TEST_F(FakeMediaPlayerTest, PlaysByVirtualTimeToTheEnd) {
    ASSERT_EQ(FakeMediaPlayer::instances(), QList<FakeMediaPlayer*>{player.get()});
    EXPECT_EQ(player->setFileName("song.mp3"), 0);
    EXPECT_EQ(opens, (Changes{{0, 5}, {5, 6}}));
    EXPECT_EQ(player->SelectionEnd(), 10.0);
    player->Play();
    clock->advance(4000);
    EXPECT_NEAR(player->CurrentPosition(), 4.0, 1e-9);
    player->Pause();
    clock->advance(5000);
    EXPECT_NEAR(player->CurrentPosition(), 4.0, 1e-9);
    player->Play();
    clock->advance(7000);
    EXPECT_EQ(plays, (Changes{{0, 2}, {2, 1}, {1, 2}, {2, 0}}));
    EXPECT_EQ(player->CurrentPosition(), 10.0);
    EXPECT_EQ(player->OpenState(), MediaPlayer::mpoOpen);
    // Play after the end starts over.
    player->Play();
    EXPECT_EQ(player->CurrentPosition(), 0.0);
    EXPECT_EQ(player->calls, (QStringList{"FileName=song.mp3", "Play", "Pause", "Play", "Play"}));
}

TEST_F(FakeMediaPlayerTest, RefusesUnscriptedNamesAndCloses) {
    EXPECT_EQ(player->setFileName("other.mp3"), MediaPlayer::ErrorFail);
    EXPECT_EQ(opens, (Changes{{0, 5}, {5, 0}}));
    EXPECT_EQ(player->fileName(), QString());
    FakeMediaPlayer::media().defaultLength = 3.0;
    EXPECT_EQ(player->setFileName("other.mp3"), 0);
    EXPECT_EQ(player->Duration(), 3.0);
    player->Play();
    opens.clear();
    player->setFileName(QString());
    EXPECT_EQ(plays, (Changes{{0, 2}, {2, 6}}));
    EXPECT_EQ(opens, (Changes{{6, 0}}));
}

TEST_F(FakeMediaPlayerTest, StopAndSeekAndPlayToEnd) {
    player->setFileName("song.mp3");
    player->Play();
    player->setCurrentPosition(8.5);
    clock->advance(1000);
    EXPECT_NEAR(player->CurrentPosition(), 9.5, 1e-9);
    player->Stop();
    EXPECT_EQ(player->CurrentPosition(), 0.0);
    player->Play();
    player->playToEnd();
    EXPECT_EQ(plays, (Changes{{0, 2}, {2, 0}, {0, 2}, {2, 0}}));
    player->setVolume(-2500);
    EXPECT_TRUE(player->calls.contains("Volume=-2500"));
}

}  // namespace
