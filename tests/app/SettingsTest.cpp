// The settings store as the user's file holds it, and the main window's start and close:
// what they read from it and write back.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QScreen>

#include "app/Forms.h"
#include "app/Runtime.h"
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

constexpr auto HKCU = RegRoot::CurrentUser;

const QString readMessage =
    "An error occurred attempting to read \r\na setting from the Windows Registry.";

class SettingsTest : public AppTest {
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

TEST_F(SettingsTest, SettingsAreTextInTheUsersStoreAndReadBackAsTheProgramWantsThem) {
    EXPECT_TRUE(SaveAppSetting("SkinPath", "/home/me/skins/Blue"));
    auto v = registry().queryValue(HKCU, "Software\\Brightfen\\Cantovel\\Settings", "SkinPath");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->type, quint32(REG_SZ));
    EXPECT_EQ(v->data, QByteArray("/home/me/skins/Blue", 20));
    EXPECT_EQ(ReadAppSetting("skinpath", ""), "/home/me/skins/Blue");
    EXPECT_TRUE(
        QFile::exists(qEnvironmentVariable("XDG_CONFIG_HOME") + "/cantovel/HKEY_CURRENT_USER.reg"));

    // A number stored as such reads with at least three digits. The read buffer holds 511
    // characters; empty is not the default.
    ASSERT_TRUE(registry().setValue(HKCU, SettingsKey(), "Volume", RegValue::dword(5)));
    EXPECT_EQ(ReadAppSetting("Volume", "100"), "005");
    const QString fits(511, u'a'), tooLong(512, u'b');
    ASSERT_TRUE(SaveAppSetting("Fits", fits));
    ASSERT_TRUE(SaveAppSetting("TooLong", tooLong));
    ASSERT_TRUE(SaveAppSetting("Empty", ""));
    EXPECT_EQ(ReadAppSetting("Fits", "default"), fits);
    EXPECT_EQ(ReadAppSetting("TooLong", "default"), "default");
    EXPECT_EQ(ReadAppSetting("Empty", "default"), "");
    EXPECT_TRUE(msgBox().shown.isEmpty());

    // A failed read tells only when asked to.
    EXPECT_EQ(ReadAppSetting("TooLong", "default", true, false), "default");
    EXPECT_EQ(ReadAppSetting("Main Window Top", "450", true, false), "450");
    EXPECT_EQ(msgBox().texts(), (QStringList{readMessage, readMessage}));
}

TEST_F(SettingsTest, FailedWritesAndDeletesShowTheirMessages) {
    // A plain file where the store's folder should be: nothing can be written.
    QFile blocker(registry().folder());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    EXPECT_FALSE(SaveAppSetting("Volume", "50", true, true));
    EXPECT_FALSE(SaveAppSetting("Volume", "50", true, false));
    EXPECT_FALSE(DeleteRegValue(HKCU, SettingsKey(), "Volume", false));
    EXPECT_FALSE(DeleteRegKey(HKCU, SettingsKey(), false));
    EXPECT_EQ(
        msgBox().texts(),
        (QStringList{"An error occurred attempting to save a setting to the Windows Registry.",
                     "An error occurred attempting to delete a setting from the Windows Registry.",
                     "An error occurred attempting to delete a key from the Windows Registry."}));
    for (const auto& box : msgBox().shown) EXPECT_EQ(box.icon(), Mb::Exclamation);
}

TEST_F(SettingsTest, TheMainWindowComesBackWhereItClosedWithTheSavedVolumes) {
    // The first start: every default, silently, with no mixer.
    mixer->present = false;
    frmMain* main = start();
    ASSERT_TRUE(main);
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(main->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(main->PlayerVolume, 100);
    EXPECT_EQ(main->MasterVolume, 255);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(frmTemp::get().mnuExit->text(), "E&xit\tAlt+F4");
    main->move(40, 20);
    const QPoint at = main->pos();
    ASSERT_TRUE(main->unload());
    const double tpp = 1440.0 / QApplication::primaryScreen()->logicalDotsPerInchX();
    EXPECT_EQ(ReadAppSetting("Main Window Left", "x"), QString::number(qRound(at.x() * tpp)));
    EXPECT_EQ(ReadAppSetting("Main Window Top", "x"), QString::number(qRound(at.y() * tpp)));

    // With its position asked for, the window comes back there, on top when asked; the
    // volumes come from the setting and the mixer.
    FakeMediaPlayer::install();
    mixer->present = true;
    mixer->volume = 64;
    SaveAppSetting("Volume", "50");
    SaveAppSetting("Position", "1");
    SaveAppSetting("Always Ontop", "1");
    main = start();
    EXPECT_EQ(main->pos(), at);
    EXPECT_TRUE(main->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(main->PlayerVolume, 50);
    EXPECT_EQ(main->MasterVolume, 64);
    EXPECT_EQ(frmTemp::get().MP->Volume(), -5000);
    unloadTheProgram();

    // A volume past a byte and a position past any screen: each statement is passed over.
    SaveAppSetting("Volume", "300");
    SaveAppSetting("Main Window Top", "1e308");
    SaveAppSetting("Main Window Left", "150");
    main = start();
    EXPECT_EQ(main->PlayerVolume, 0);
    EXPECT_EQ(main->x(), qRound(150 / tpp));
    // A path with blanks comes as one.
    EXPECT_EQ(CommandLineOf({"cantovel", "/music/my", "song.mp3"}), "/music/my song.mp3");
}
