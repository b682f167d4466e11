// Keys, menu words and the window commands of the captionless main window.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QScreen>

#include "player/HelpFile.h"
#include "skin/frmAbout.h"
#include "skin/frmSettings.h"
#include "support/MainWindowFixture.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

constexpr int Alt = 4, Ctrl = 2, Shift = 1;
constexpr int F1 = 0x70, F3 = 0x72, F4 = 0x73;

class KeysTest : public MainWindowFixture {
  protected:
    void TearDown() override {
        for (QMenu* menu : findMenus()) menu->hide();
        MainWindowFixture::TearDown();
    }
    QList<QMenu*> findMenus() {
        if (!Forms::find<frmTemp>()) return {};
        return temp().findChildren<QMenu*>();
    }
    // The help folder of the test, with or without its contents page.
    QString helpDir(bool withContents) {
        const QString dir = tempDir() + QStringLiteral("/help");
        QDir().mkpath(dir);
        if (withContents) {
            QFile f(dir + QStringLiteral("/index.html"));
            EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        }
        env.set("CANTOVEL_HELP_DIR", dir);
        return dir;
    }
    ScopedEnv env;
};

TEST_F(KeysTest, AltLettersAndClicksOpenTheMenusBelowTheirWords) {
    frmMain& m = load();
    struct Case {
        char key;
        QMenu* menu;
        QPoint at;
    };
    const Case cases[] = {
        {'F', temp().mnuFile, {16, 38}},        {'P', temp().mnuPlayback, {40, 38}},
        {'C', temp().mnuConversions, {88, 38}}, {'O', temp().mnuOptions, {152, 38}},
        {'W', temp().mnuWindow, {192, 38}},     {'H', temp().mnuHelp, {232, 38}}};
    for (const Case& c : cases) {
        m.Form_KeyDown(c.key, Alt);
        EXPECT_TRUE(c.menu->isVisible()) << c.key;
        EXPECT_EQ(c.menu->pos(), m.mapToGlobal(c.at)) << c.key;
        c.menu->hide();
    }
    // A click on a menu word opens its menu too.
    click(m, QPoint(100, 27));
    EXPECT_TRUE(temp().mnuConversions->isVisible());
    EXPECT_EQ(temp().mnuConversions->pos(), m.mapToGlobal(QPoint(88, 38)));
}

TEST_F(KeysTest, TheFileMenuAdaptsToTheCurrentFile) {
    frmMain& m = load();
    m.CurrentFile = QStringLiteral("/music/song.MP3");
    m.lblmnuFile_Click();
    EXPECT_TRUE(temp().mnuMP3Info->isEnabled());
    EXPECT_FALSE(temp().mnuPlaylist->isChecked());
    temp().mnuFile->hide();

    Form playlist(QStringLiteral("frmPlaylist"));
    m.CurrentFile = QStringLiteral("/music/song.wav");
    m.lblmnuFile_Click();
    EXPECT_FALSE(temp().mnuMP3Info->isEnabled());
    EXPECT_TRUE(temp().mnuPlaylist->isChecked());
}

TEST_F(KeysTest, ThePlaybackMenuAdaptsToWhatPlays) {
    frmMain& m = load();
    m.lblmnuPlayBack_Click();
    EXPECT_FALSE(temp().mnuStop->isEnabled());
    EXPECT_FALSE(temp().mnuPause->isEnabled());
    EXPECT_FALSE(temp().mnuPlayCurrent->isEnabled());
    EXPECT_FALSE(temp().mnuSeekNext->isEnabled());
    temp().mnuPlayback->hide();

    m.List1 = QStringList{QStringLiteral("/a.mp3"), QStringLiteral("/b.mp3")};
    m.PlaylistRunning = VTrue;
    m.PlayQueue = m.List1;
    m.lblmnuPlayBack_Click();
    EXPECT_TRUE(temp().mnuPlayCurrent->isEnabled());
    EXPECT_TRUE(temp().mnuSeekNext->isEnabled());
    EXPECT_TRUE(temp().mnuSeekPrev->isEnabled());
    temp().mnuPlayback->hide();

    m.PlaylistRunning = VFalse;
    m.CurrentFile = QStringLiteral("/cd/D/Track03.cda");
    m.lblmnuPlayBack_Click();
    EXPECT_TRUE(temp().mnuSeekNext->isEnabled());
}

TEST_F(KeysTest, CtrlRRollsUpTheMenuRollsDownShiftF3OpensTheSettings) {
    frmMain& m = load();
    m.Form_KeyDown('R', Ctrl);
    EXPECT_EQ(m.height(), 38);
    temp().mnuRollup->trigger();
    EXPECT_EQ(m.height(), 175);
    m.Form_KeyDown(F3, Shift);
    auto* settings = Forms::find<frmSettings>();
    ASSERT_NE(settings, nullptr);
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(settings->windowTitle(), QStringLiteral("General Settings"));
}

TEST_F(KeysTest, XShowsThePositionReadFromTheThumb) {
    frmMain& m = load();
    m.TrackLength = 248;
    m.imgPlayProgress.setLeft(16 + 124);
    m.Form_KeyDown('X', 0);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text, QStringLiteral("124"));
    // Keys without a meaning say nothing.
    m.Form_KeyDown('I', Ctrl);
    m.Form_KeyDown(0x2E, 0);
    m.Form_KeyDown('X', Ctrl);
    EXPECT_EQ(msgBox().shown.size(), 1);
}

TEST_F(KeysTest, AltF4AndTheCloseBoxUnloadTheWindow) {
    frmMain& m = load();
    m.Form_KeyDown(F4, Alt);
    EXPECT_EQ(frmMain::instance(), nullptr);
    frmMain& again = load();
    click(again, QPoint(292, 7));
    EXPECT_EQ(frmMain::instance(), nullptr);
}

TEST_F(KeysTest, TheSystemMenuAreaOpensTheMenuAndADoubleClickCloses) {
    frmMain& m = load();
    click(m, QPoint(8, 8));
    EXPECT_TRUE(temp().mnuSysMenu->isVisible());
    EXPECT_EQ(temp().mnuSysMenu->defaultAction(), temp().popClose);
    EXPECT_FALSE(temp().popRestore->isEnabled());
    temp().mnuSysMenu->hide();
    mouse(m, QEvent::MouseButtonDblClick, QPoint(8, 8), Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(frmMain::instance(), nullptr);

    // A right click on the caption rows opens it as well, lower down nothing.
    frmMain& again = load();
    press(again, QPoint(150, 8), Qt::RightButton);
    release(again, QPoint(150, 8), Qt::RightButton);
    EXPECT_TRUE(temp().mnuSysMenu->isVisible());
    temp().mnuSysMenu->hide();
    press(again, QPoint(150, 90), Qt::RightButton);
    release(again, QPoint(150, 90), Qt::RightButton);
    EXPECT_FALSE(temp().mnuSysMenu->isVisible());
}

TEST_F(KeysTest, AWindowDraggedPastTheWorkAreaStopsAtItsEdge) {
    frmMain& m = load();
    const QRect area = m.screen()->availableGeometry();
    m.move(area.left() + 50, area.top() + 50);
    QApplication::processEvents();
    press(m, QPoint(150, 90));
    drag(m, QPoint(150 - 400, 90 - 400));
    release(m, QPoint(150 - 400, 90 - 400));
    EXPECT_EQ(m.pos(), area.topLeft());
    m.move(area.right() - 400, area.bottom() - 400);
    QApplication::processEvents();
    press(m, QPoint(150, 90));
    drag(m, QPoint(150 + 1000, 90 + 1000));
    release(m, QPoint(150 + 1000, 90 + 1000));
    EXPECT_EQ(m.pos(), QPoint(area.right() + 1 - 300, area.bottom() + 1 - 175));
}

TEST_F(KeysTest, KeepInWorkAreaClampsAllFourSides) {
    const QRect area(0, 0, 800, 600);
    WindowPos pos{nullptr, -10, 590, 300, 175, 0};
    frmMain::KeepInWorkArea(pos, area);
    EXPECT_EQ(QPoint(pos.x, pos.y), QPoint(0, 425));
    pos = WindowPos{nullptr, 700, -3, 300, 175, 0};
    frmMain::KeepInWorkArea(pos, area);
    EXPECT_EQ(QPoint(pos.x, pos.y), QPoint(500, 0));
    pos = WindowPos{nullptr, 10, 20, 300, 175, 0};
    frmMain::KeepInWorkArea(pos, area);
    EXPECT_EQ(QPoint(pos.x, pos.y), QPoint(10, 20));
}

TEST_F(KeysTest, F1OpensTheHelpOrSaysWhy) {
    frmMain& m = load();
    const QString dir = helpDir(false);
    m.Form_KeyDown(F1, 0);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              QStringLiteral("The Cantovel Help compoents seems to have been deleted, moved, or "
                             "renamed; please reinstall Cantovel or replace the help components "
                             "otherwise in order to use the help system."));
    EXPECT_TRUE(shell->opened.isEmpty());

    helpDir(true);
    m.Form_KeyDown(F1, 0);
    EXPECT_EQ(shell->opened, QStringList{dir + QStringLiteral("/index.html")});
    EXPECT_EQ(msgBox().shown.size(), 1);

    shell->openResult = 31;
    temp().mnuHelpFile->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_EQ(msgBox().shown[1].text,
              QStringLiteral("An error occurred attempting to open the '") + dir +
                  QStringLiteral("/index.html' file (ShellExecute API code 31)."));
    EXPECT_EQ(msgBox().shown[1].icon(), Mb::Exclamation);
    EXPECT_TRUE(msgBox().shown[1].systemModal());
    EXPECT_TRUE(msgBox().shown[1].foreground());
}

TEST_F(KeysTest, HelpTopicsHaveTheirOwnPagesInTheShippedHelpToo) {
    const QString dir = helpDir(true);
    EXPECT_EQ(HelpTopicPath(QStringLiteral("Video CD Player (Standalone)")),
              dir + QStringLiteral("/video-cd-player-standalone.html"));
    // A topic without a page opens the contents.
    ShowHelpTopic(QStringLiteral("Playlists"));
    EXPECT_EQ(shell->opened, QStringList{dir + QStringLiteral("/index.html")});

    // The shipped help has a page for every topic.
    env.set("CANTOVEL_HELP_DIR", QStringLiteral(CANTOVEL_SOURCE_DIR "/resources/help"));
    for (const char* topic : {"Playlists", "Audio CD Control Panel", "CDDB Access CD Player",
                              "Convert WAV to MP3", "Convert MP3 to WAV", "WAV Batch Converter",
                              "Video CD Player (Standalone)", "Associate Supported File Types"})
        EXPECT_TRUE(QFile::exists(HelpTopicPath(QLatin1String(topic)))) << topic;
    EXPECT_TRUE(QFile::exists(HelpFilePath()));
}

TEST_F(KeysTest, MailWebSitesAndTheScreenSaverGoToTheDesktop) {
    frmMain& m = load();
    m.Form_KeyDown(0x76, Ctrl);
    m.Form_KeyDown(0x77, Ctrl);
    temp().mnuSite[0]->trigger();
    ASSERT_EQ(shell->opened.size(), 3);
    EXPECT_TRUE(shell->opened[0].startsWith(QStringLiteral("mailto:")));
    EXPECT_TRUE(shell->opened[1].startsWith(QStringLiteral("https://")));
    EXPECT_EQ(shell->opened[2], QStringLiteral("https://mpv.io/"));
}

TEST_F(KeysTest, MultimediaPropertiesOpenTheSoundSettingsOrSaySo) {
    load();
    const QString bin = tempDir() + QStringLiteral("/bin");
    QDir().mkpath(bin);
    env.set("PATH", bin);
    temp().mnuMMAudioProperties->trigger();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_TRUE(shell->started.isEmpty());

    QFile tool(bin + QStringLiteral("/pavucontrol"));
    ASSERT_TRUE(tool.open(QIODevice::WriteOnly));
    tool.write("#!/bin/sh\n");
    tool.close();
    tool.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    temp().mnuMMAudioProperties->trigger();
    ASSERT_EQ(shell->started.size(), 1);
    EXPECT_EQ(shell->started[0].program, bin + QStringLiteral("/pavucontrol"));
    EXPECT_EQ(shell->started[0].arguments, QStringList{QStringLiteral("--tab=3")});
    EXPECT_EQ(msgBox().shown.size(), 1);
}

TEST_F(KeysTest, TheScreenSaverStartsThroughTheDesktop) {
    load();
    temp().mnuStartSS->trigger();
    ASSERT_EQ(shell->started.size(), 1);
    EXPECT_EQ(shell->started[0].program, QStringLiteral("xdg-screensaver"));
    EXPECT_EQ(shell->started[0].arguments, QStringList{QStringLiteral("activate")});
}

TEST_F(KeysTest, AboutAndDisclaimerOpenFromTheHelpMenu) {
    load();
    temp().mnuAbout->trigger();
    temp().mnuDisclaimer->trigger();
    ASSERT_NE(Forms::find<frmAbout>(), nullptr);
    EXPECT_TRUE(Forms::find<frmAbout>()->isVisible());
    EXPECT_TRUE(IsFormLoaded(QStringLiteral("frmDisclaimer")));
    Forms::find<frmAbout>()->cmdOK->click();
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmAbout")));
}

}  // namespace
