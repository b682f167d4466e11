// Keys, menu words and the window commands of the captionless main window.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "player/HelpFile.h"
#include "skin/frmAbout.h"
#include "skin/frmSettings.h"
#include "support/MainWindowFixture.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class KeysTest : public MainWindowFixture {
  protected:
    void TearDown() override {
        if (Forms::find<frmTemp>())
            for (QMenu* menu : temp().findChildren<QMenu*>()) menu->hide();
        MainWindowFixture::TearDown();
    }
    static void key(frmMain& m, Qt::Key k, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QTest::keyClick(&m, k, mods);
    }
    ScopedEnv env;
};

TEST_F(KeysTest, MenuWordsOpenBelowThemselvesKeysWorkAndADragStopsAtTheWorkArea) {
    frmMain& m = load();
    const std::tuple<Qt::Key, QMenu*, QPoint> cases[] = {
        {Qt::Key_F, temp().mnuFile, {16, 38}},        {Qt::Key_P, temp().mnuPlayback, {40, 38}},
        {Qt::Key_C, temp().mnuConversions, {88, 38}}, {Qt::Key_O, temp().mnuOptions, {152, 38}},
        {Qt::Key_W, temp().mnuWindow, {192, 38}},     {Qt::Key_H, temp().mnuHelp, {232, 38}}};
    for (const auto& [k, menu, at] : cases) {
        key(m, k, Qt::AltModifier);
        EXPECT_TRUE(menu->isVisible()) << k;
        EXPECT_EQ(menu->pos(), m.mapToGlobal(at)) << k;
        menu->hide();
    }
    click(m, QPoint(100, 27));
    EXPECT_TRUE(temp().mnuConversions->isVisible());
    temp().mnuConversions->hide();

    // Keys roll up, show the settings and the position; others say nothing.
    key(m, Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(m.height(), 38);
    temp().mnuRollup->trigger();
    EXPECT_EQ(m.height(), 175);
    key(m, Qt::Key_F3, Qt::ShiftModifier);
    auto* settings = Forms::find<frmSettings>();
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(settings->windowTitle(), QStringLiteral("General Settings"));

    m.TrackLength = 248;
    m.imgPlayProgress.setLeft(16 + 124);
    key(m, Qt::Key_X);
    EXPECT_EQ(msgBox().texts(), QStringList{"124"});
    key(m, Qt::Key_I, Qt::ControlModifier);
    key(m, Qt::Key_Delete);
    key(m, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(msgBox().shown.size(), 1);

    // A window dragged past the work area stops at its edge.
    const QRect area = m.screen()->availableGeometry();
    const std::tuple<QPoint, QPoint, QPoint> drags[] = {
        {area.topLeft() + QPoint(50, 50), QPoint(-400, -400), area.topLeft()},
        {area.bottomRight() - QPoint(400, 400), QPoint(1000, 1000),
         QPoint(area.right() + 1 - 300, area.bottom() + 1 - 175)}};
    for (const auto& [from, by, to] : drags) {
        m.move(from);
        QApplication::processEvents();
        press(m, QPoint(150, 90));
        drag(m, QPoint(150, 90) + by);
        release(m, QPoint(150, 90) + by);
        EXPECT_EQ(m.pos(), to);
    }
}

TEST_F(KeysTest, TheShippedHelpHasAPageForEveryTopic) {
    env.set("CANTOVEL_HELP_DIR", QStringLiteral(CANTOVEL_SOURCE_DIR "/resources/help"));
    for (const char* topic : {"Playlists", "Audio CD Control Panel", "CDDB Access CD Player",
                              "Convert WAV to MP3", "Convert MP3 to WAV", "WAV Batch Converter",
                              "Video CD Player (Standalone)", "Associate Supported File Types"})
        EXPECT_TRUE(QFile::exists(HelpTopicPath(QLatin1String(topic)))) << topic;
    EXPECT_TRUE(QFile::exists(HelpFilePath()));
}

TEST_F(KeysTest, DesktopCommandsGoToTheDesktopAboutOpensAndTheWaysToCloseWork) {
    frmMain& m = load();
    key(m, Qt::Key_F7, Qt::ControlModifier);
    key(m, Qt::Key_F8, Qt::ControlModifier);
    temp().mnuSite[0]->trigger();
    ASSERT_EQ(shell->opened.size(), 3);
    EXPECT_TRUE(shell->opened[0].startsWith(QStringLiteral("mailto:")));
    EXPECT_EQ(shell->opened[2], QStringLiteral("https://mpv.io/"));
    temp().mnuStartSS->trigger();
    ASSERT_EQ(shell->started.size(), 1);
    EXPECT_EQ(shell->started[0].program, QStringLiteral("xdg-screensaver"));
    EXPECT_EQ(shell->started[0].arguments, QStringList{QStringLiteral("activate")});

    // The sound settings: told when the tool is missing, started when it is there.
    const QString bin = tempDir() + QStringLiteral("/bin");
    QDir().mkpath(bin);
    env.set("PATH", bin);
    temp().mnuMMAudioProperties->trigger();
    ASSERT_EQ(msgBox().shown.size(), 1);
    QFile tool(bin + QStringLiteral("/pavucontrol"));
    ASSERT_TRUE(tool.open(QIODevice::WriteOnly));
    tool.close();
    tool.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    temp().mnuMMAudioProperties->trigger();
    ASSERT_EQ(shell->started.size(), 2);
    EXPECT_EQ(shell->started[1].program, bin + QStringLiteral("/pavucontrol"));
    EXPECT_EQ(shell->started[1].arguments, QStringList{QStringLiteral("--tab=3")});

    temp().mnuAbout->trigger();
    temp().mnuDisclaimer->trigger();
    ASSERT_NE(Forms::find<frmAbout>(), nullptr);
    EXPECT_TRUE(IsFormLoaded(QStringLiteral("frmDisclaimer")));
    Forms::find<frmAbout>()->cmdOK->click();
    EXPECT_FALSE(IsFormLoaded(QStringLiteral("frmAbout")));

    // Alt+F4, the close box and the system menu's Close end the program.
    key(m, Qt::Key_F4, Qt::AltModifier);
    EXPECT_EQ(frmMain::instance(), nullptr);
    click(load(), QPoint(292, 7));
    EXPECT_EQ(frmMain::instance(), nullptr);

    frmMain& again = load();
    click(again, QPoint(8, 8));
    EXPECT_TRUE(temp().mnuSysMenu->isVisible());
    EXPECT_EQ(temp().mnuSysMenu->defaultAction(), temp().popClose);
    temp().mnuSysMenu->hide();
    // A right click on the caption rows opens it as well, lower down nothing.
    press(again, QPoint(150, 8), Qt::RightButton);
    release(again, QPoint(150, 8), Qt::RightButton);
    EXPECT_TRUE(temp().mnuSysMenu->isVisible());
    temp().mnuSysMenu->hide();
    press(again, QPoint(150, 90), Qt::RightButton);
    release(again, QPoint(150, 90), Qt::RightButton);
    EXPECT_FALSE(temp().mnuSysMenu->isVisible());
    mouse(again, QEvent::MouseButtonDblClick, QPoint(8, 8), Qt::LeftButton, Qt::LeftButton);
    EXPECT_EQ(frmMain::instance(), nullptr);
}

}  // namespace
