// Start-up and shutdown of the application: the single-instance decision, the main
// window's load and its closing.
#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <QTimer>

#include "app/AppState.h"
#include "app/Form.h"
#include "app/Forms.h"
#include "app/Settings.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "support/AppTest.h"
#include "support/FakeInstanceLink.h"
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
        Components::provideFactory<InstanceLink>([this] {
            auto l = std::make_unique<FakeInstanceLink>();
            l->otherRunning = otherRunning;
            l->failWith = linkError;
            l->onExecute = [this](const QString& c, int t) {
                sent << c;
                sentTimeout = t;
            };
            lastLink = l.get();
            return l;
        });
    }
    void TearDown() override {
        closeAll();
        AppTest::TearDown();
    }
    static void closeAll() {
        UnloadAllForms();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    frmMain* start(const QString& arg = {}) {
        QStringList args{QStringLiteral("cantovel")};
        if (!arg.isEmpty()) args << arg;
        EXPECT_EQ(SubMain(args), -1);
        return frmMain::instance();
    }

    std::shared_ptr<FakeMixer> mixer;
    bool otherRunning = false;
    QString linkError;
    FakeInstanceLink* lastLink = nullptr;  // gone once a second start ends
    QStringList sent;
    int sentTimeout = 0;
};

// Records the order in which forms unload.
class Recorder : public Form {
  public:
    Recorder(const QString& name, QStringList* log) : Form(name), log_(log) {}

  protected:
    bool unloadEvent() override {
        *log_ << formName();
        return false;
    }

  private:
    QStringList* log_;
};

}  // namespace

TEST_F(StartupTest, SecondStartRestoresTheFirstOrSaysWhyNotAndEnds) {
    otherRunning = true;
    EXPECT_EQ(SubMain({QStringLiteral("cantovel"), QStringLiteral("/some/file.mp3")}), 0);
    EXPECT_EQ(sent, QStringList{QStringLiteral("[Restore App]")});
    EXPECT_EQ(frmMain::instance(), nullptr);

    // A failed link says so and still ends.
    linkError = QStringLiteral("the running instance did not answer");
    EXPECT_EQ(SubMain({QStringLiteral("cantovel")}), 0);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              "An error occurred attempting to communicate with Cantovel: the running instance "
              "did not answer");
}

TEST_F(StartupTest, FirstStartLoadsTheCaptionlessWindowWithDefaultsAndNoMessage) {
    mixer->present = false;
    frmMain* main = start();
    ASSERT_TRUE(main);
    EXPECT_TRUE(lastLink->listening);
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
    // The restore command brings back a minimised window.
    main->showMinimized();
    lastLink->deliver("[Restore App]");
    EXPECT_FALSE(main->isMinimized());
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
    closeAll();

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
        closeAll();
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

// With the program's event loop running, closing the main window ends it: every way out
// (close box, Alt+F4, Exit) comes through the window's unload, which closes every other form,
// last first.
TEST_F(StartupTest, UnloadingTheMainWindowClosesEveryFormAndEndsTheRunningEventLoop) {
    QStringList log;
    frmMain* main = start();
    new Recorder("frmFirst", &log);
    new Recorder("frmSecond", &log);
    QTimer::singleShot(0, main, [main] { main->unload(); });
    // Should the loop not end, this ends it with a code the test sees.
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] { QCoreApplication::exit(7); });
    guard.start(5000);
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_EQ(log, (QStringList{"frmSecond", "frmFirst"}));
    EXPECT_EQ(Forms::count(), 0);
}
