// The ALSA master volume on a real mixer: a private PulseAudio server with a null sink,
// reached through ALSA's pulse control plugin (its "Master" runs 0..65536, so a percent is
// not a whole number of steps).
#include <gtest/gtest.h>

#include <QApplication>

#include "app/Forms.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "platform/PulseServer.h"
#include "platform/mixer/AlsaMixer.h"
#include "player/frmMain.h"
#include "support/AppTest.h"
#include "support/FakeMediaPlayer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class AlsaMixerTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        pulse = std::make_unique<PulseServer>(tempDir());
        if (!pulse->running) GTEST_SKIP() << "pulseaudio is not installed or did not start";
        mixer = std::make_shared<AlsaMixer>("pulse");
        if (mixer->GetMasterVolume() < 0) GTEST_SKIP() << "ALSA's pulse plugin is missing";
        Components::provideService<Mixer>(mixer);
        FakeMediaPlayer::install();
    }
    void TearDown() override {
        unloadTheProgram();
        AppTest::TearDown();
    }

    std::unique_ptr<PulseServer> pulse;
    std::shared_ptr<AlsaMixer> mixer;
};

TEST_F(AlsaMixerTest, EveryLevelReadsBackAsWrittenAndStartsKeepIt) {
    for (long level = 0; level <= 100; ++level) {
        ASSERT_TRUE(mixer->SetMasterVolume(level));
        ASSERT_EQ(mixer->GetMasterVolume(), level);
    }

    // Each start reads the master volume and writes it back.
    ASSERT_TRUE(mixer->SetMasterVolume(29));
    for (int start = 0; start < 5; ++start) {
        ASSERT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
        ASSERT_NE(frmMain::instance(), nullptr);
        EXPECT_EQ(frmMain::instance()->MasterVolume, 29) << "start " << start;
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_EQ(mixer->GetMasterVolume(), 29);
}

}  // namespace
