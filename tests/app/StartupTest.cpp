// Start-up and shutdown of the application: the main window's load from the settings and
// the mixer, and what its closing writes back.
#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Settings.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "platform/instance/LocalInstanceLink.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "support/AppTest.h"
#include "support/FakeMediaPlayer.h"
#include "support/FakeMixer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class StartupTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        mixer = std::make_shared<FakeMixer>();
        Components::provideService<Mixer>(mixer);
        const QString folder = tempDir() + "/link";
        Components::provideFactory<InstanceLink>(
            [folder] { return std::make_unique<LocalInstanceLink>(folder); });
    }
    frmMain* start() {
        // A main window closed before must be gone, and with it its hold on the link.
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
        return frmMain::instance();
    }

    std::shared_ptr<FakeMixer> mixer;
};

}  // namespace

TEST_F(StartupTest, FirstStartLoadsTheCaptionlessWindowWithDefaultsAndNoMessage) {
    mixer->present = false;
    frmMain* main = start();
    ASSERT_TRUE(main);
    EXPECT_FALSE(main->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(main->isVisible());
    // Missing settings and no mixer give every default, silently.
    EXPECT_EQ(main->PlayerVolume, 100);
    EXPECT_EQ(main->MasterVolume, 255);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    auto* temp = Forms::find<frmTemp>();
    ASSERT_TRUE(temp);
    EXPECT_EQ(temp->mnuExit->text(), "E&xit\tAlt+F4");
    for (auto* t :
         {&main->Timer1, &main->Timer2, &main->Timer3, &main->CDR_Timer, &main->tmrVolume})
        EXPECT_FALSE(t->isEnabled());
    // A path with blanks comes as one.
    EXPECT_EQ(CommandLineOf({"cantovel", "/music/my", "song.mp3"}), "/music/my song.mp3");
}

TEST_F(StartupTest, VolumesComeFromTheSettingAndTheMixerAndOutOfRangeNumbersAreSkipped) {
    FakeMediaPlayer::install();
    SaveAppSetting("Volume", "50");
    mixer->volume = 64;
    frmMain* main = start();
    EXPECT_EQ(main->PlayerVolume, 50);
    EXPECT_EQ(main->MasterVolume, 64);
    EXPECT_EQ(frmTemp::get().MP->Volume(), -5000);
    unloadTheProgram();

    // A volume past a byte and a position past any screen: each statement is passed over.
    for (const char* volume : {"300", "-5"}) {
        SaveAppSetting("Volume", volume);
        SaveAppSetting("Position", "1");
        SaveAppSetting("Main Window Top", "1e308");
        SaveAppSetting("Main Window Left", "150");
        main = start();
        EXPECT_EQ(main->PlayerVolume, 0) << volume;
        const double tpp = 1440.0 / main->screen()->logicalDotsPerInchX();
        EXPECT_EQ(main->x(), qRound(150 / tpp));
        unloadTheProgram();
    }
}

TEST_F(StartupTest, ThePositionIsWrittenAtCloseAndUsedOnlyWithPositionOn) {
    SaveAppSetting("Main Window Left", "1500");
    SaveAppSetting("Main Window Top", "750");
    frmMain* main = start();
    main->move(40, 20);
    const QPoint at = main->pos();
    ASSERT_TRUE(main->unload());
    const double tpp = 1440.0 / main->screen()->logicalDotsPerInchX();
    EXPECT_EQ(ReadAppSetting("Main Window Left", "x"), QString::number(qRound(at.x() * tpp)));
    EXPECT_EQ(ReadAppSetting("Main Window Top", "x"), QString::number(qRound(at.y() * tpp)));

    SaveAppSetting("Main Window Left", "1500");
    SaveAppSetting("Main Window Top", "750");
    SaveAppSetting("Position", "1");
    SaveAppSetting("Always Ontop", "1");
    main = start();
    EXPECT_EQ(main->pos(), QPoint(int(1500 / tpp), int(750 / tpp)));
    EXPECT_TRUE(main->windowFlags() & Qt::WindowStaysOnTopHint);
}
