// Commands given the way a user gives them, on a real X server and window manager: keys
// to the main window, the tray icon clicked in a real notification area.
#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTest>

#include "platform/shell/DesktopShell.h"
#include "player/PlayerTest.h"
#include "shell/cSysTray.h"
#include "shell/frmTrayIcon.h"
#include "support/AudioFixtures.h"
#include "support/DesktopSession.h"
#include "support/FakeMixer.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const bool desktop = requestDesktopSession();

class CommandsTest : public PlayerTest {};

TEST_F(CommandsTest, HelpSaysSoWhenNothingCanShowItsPage) {
    ScopedEnv env;
    const QString help = tempDir() + "/help";
    QDir().mkpath(help);
    file("help/index.html", "<html></html>");
    env.set("CANTOVEL_HELP_DIR", help);
    // The desktop's opener finds no program for a web page.
    const QString bin = tempDir() + "/bin";
    QDir().mkpath(bin);
    const QString opener = file("bin/xdg-open", "#!/bin/sh\nexit 3\n");
    QFile::setPermissions(opener, QFile::permissions(opener) | QFile::ExeOwner);
    env.set("PATH", bin + ":" + qgetenv("PATH"));
    Components::provideService<Shell>(std::make_shared<DesktopShell>());

    const QString told = "An error occurred attempting to open the '" + help +
                         "/index.html' file (ShellExecute API code 31).";
    QTest::keyClick(main, Qt::Key_F1);
    EXPECT_EQ(msgBox().texts(), QStringList{told});
    msgBox().reset();
    temp->mnuHelpFile->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList{told});

    // No desktop to hand the page to at all.
    msgBox().reset();
    Components::provideService<Shell>(std::shared_ptr<Shell>());
    temp->mnuHelpFile->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{"An error has occured while attempting to access the Cantovel help "
                          "system.  It is recommdended that you reinstall Brightfen Cantovel in "
                          "order to correct this condition."});
}

// A real notification area (trayer, an XEmbed tray) beside the window manager.
class TrayOnDesktopTest : public PlayerTest {
  protected:
    void SetUp() override {
        PlayerTest::SetUp();
        Components::provideService<Mixer>(std::make_shared<FakeMixer>());
        REQUIRE_DESKTOP_SESSION();
        for (const char* tool : {"trayer", "xdotool", "xprop"})
            if (QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty())
                GTEST_SKIP() << "skipped: " << tool
                             << " is missing (trayer gives the notification area)";
        trayer.start(
            QStringLiteral("trayer"),
            {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
             QStringLiteral("right"), QStringLiteral("--widthtype"), QStringLiteral("request")});
        if (!trayer.waitForStarted() ||
            !waitUntil([] { return QSystemTrayIcon::isSystemTrayAvailable(); }))
            GTEST_SKIP() << "skipped: trayer did not put up a notification area";
        main->Form_Load(QString());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(main));
    }
    void TearDown() override {
        cSysTray::setAvailableOverride(std::nullopt);
        if (Forms::find<frmTrayIcon>()) tray().cSysTray1.setInTray(false);
        if (trayer.state() != QProcess::NotRunning) {
            trayer.terminate();
            trayer.waitForFinished();
        }
        PlayerTest::TearDown();
    }
    frmTrayIcon& tray() { return Forms::touch<frmTrayIcon>(); }
    // The icon's own window in the notification area.
    QWidget* iconWindow() {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->inherits("QSystemTrayIconSys")) return w;
        return nullptr;
    }
    static void xdotool(const QStringList& args) {
        ASSERT_EQ(QProcess::execute(QStringLiteral("xdotool"), args), 0)
            << args.join(' ').toStdString();
    }
    // The icon is embedded some time after it shows: the pointer goes to it until the icon
    // feels it there.
    void pointAtIcon() {
        QWidget* icon = nullptr;
        ASSERT_TRUE(waitUntil([&] { return (icon = iconWindow()) && icon->isVisible(); }));
        int moves = 0, step = 0;
        const auto counting =
            QObject::connect(&tray().cSysTray1, &cSysTray::MouseMove, [&] { ++moves; });
        const bool over = waitUntil([&] {
            if (moves) return true;
            const QString at = QString::number(4 + step++ % 2);
            QProcess::execute(QStringLiteral("xdotool"),
                              {"mousemove", "--window", QString::number(icon->winId()), at, at});
            return false;
        });
        QObject::disconnect(counting);
        ASSERT_TRUE(over);
    }
    static QStringList rows(QMenu* menu) {
        QStringList out;
        for (QAction* a : menu->actions())
            if (!a->isSeparator()) out << a->text();
        return out;
    }
    QString netWmState() {
        QProcess p;
        p.start(QStringLiteral("xprop"),
                {"-id", QString::number(main->winId()), "_NET_WM_STATE", "WM_STATE"});
        p.waitForFinished();
        return QString::fromLocal8Bit(p.readAllStandardOutput());
    }

    QProcess trayer;
};

TEST_F(TrayOnDesktopTest, TheIconTellsTheFileOpensItsMenuOnTheReleaseAndRestoresTheWindow) {
    // Minimised with the skin's button, back from the task bar (the window manager is asked
    // to activate the window, as a task bar does).
    QTest::mouseClick(main, Qt::LeftButton, {}, QPoint(268, 7));
    ASSERT_TRUE(waitUntil([&] { return netWmState().contains("_NET_WM_STATE_HIDDEN"); }));
    xdotool({"windowactivate", QString::number(main->winId())});
    ASSERT_TRUE(waitUntil([&] { return !netWmState().contains("_NET_WM_STATE_HIDDEN"); }));

    QTest::keyClick(main, Qt::Key_T, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return !main->isVisible(); }));
    EXPECT_EQ(tray().cSysTray1.shownTip(), "Cantovel");
    int presses = 0;
    QObject::connect(&tray().cSysTray1, &cSysTray::MouseDown, [&](int b) { presses += b == 2; });
    // The press is given again while the icon has not felt it: on a busy machine the
    // notification area may still be placing the icon when the first one comes.
    bool pressed = false;
    for (int attempt = 0; attempt < 5 && !pressed; ++attempt) {
        pointAtIcon();
        xdotool({"mousedown", "3"});
        pressed = waitUntil([&] { return presses > 0; }, 4000);
        if (!pressed) xdotool({"mouseup", "3"});
    }
    ASSERT_TRUE(pressed);
    EXPECT_EQ(presses, 1);
    QTest::qWait(200);
    frmTrayIcon& t = tray();
    EXPECT_FALSE(t.mnuPopup->isVisible());
    xdotool({"mouseup", "3"});
    ASSERT_TRUE(waitUntil([&] { return t.mnuPopup->isVisible(); }));
    EXPECT_EQ(t.mnuPopup->defaultAction(), t.mnuRestore);
    EXPECT_EQ(
        rows(t.mnuPopup),
        (QStringList{"Restore Window", "Help", "Conversions", "Playlist Editor", "Seek Next",
                     "Seek Previous", "Pause", "Play Current File", "Play New File", "Exit"}));
    EXPECT_EQ(rows(t.mnuHelpMenu),
              (QStringList{"Help", "Mail Brightfen", "Visit Brightfen on the Web", "About"}));
    EXPECT_EQ(rows(t.mnuConversions),
              (QStringList{"WAV Batch Converter", "Convert CD Audio to WAV",
                           "Convert CD Audio to MP3", "Convert WAV to MP3", "Convery MP3 to WAV"}));
    EXPECT_FALSE(t.mnuPause->isEnabled());  // nothing loaded
    t.mnuPopup->hide();

    // A file opened meanwhile: the tip tells it when the pointer comes, and by time as well,
    // cut to the field's 63 characters; the menu's pause row pauses it.
    openByDialog(media("Song.wav"));
    pointAtIcon();
    EXPECT_EQ(t.cSysTray1.shownTip(), "Song.wav - Cantovel");
    MP().setFileName(media(QString(70, u'x') + ".wav"));
    clock().advance(1000);
    EXPECT_EQ(t.cSysTray1.shownTip(), QString(63, u'x'));
    EXPECT_EQ(t.cSysTray1.TrayTip(), QString(70, u'x') + ".wav - Cantovel");
    xdotool({"click", "3"});
    ASSERT_TRUE(waitUntil([&] { return t.mnuPopup->isVisible(); }));
    EXPECT_TRUE(t.mnuPause->isEnabled());
    EXPECT_FALSE(t.popSeekNext->isEnabled());
    QTest::mouseClick(t.mnuPopup, Qt::LeftButton, {},
                      t.mnuPopup->actionGeometry(t.mnuPause).center());
    EXPECT_EQ(temp->mnuPause->text(), "&Resume");
    ASSERT_TRUE(waitUntil([&] { return !t.mnuPopup->isVisible(); }));
    xdotool({"click", "3"});
    ASSERT_TRUE(waitUntil([&] { return t.mnuPopup->isVisible(); }));
    EXPECT_EQ(t.mnuPause->text(), "Resume");
    t.mnuPopup->hide();

    // A double click on the icon restores the window.
    pointAtIcon();
    xdotool({"click", "--repeat", "2", "--delay", "80", "1"});
    ASSERT_TRUE(waitUntil([&] { return main->isVisible(); }));
    EXPECT_TRUE(QTest::qWaitForWindowExposed(main));
    EXPECT_FALSE(main->isMinimized());
    QTest::qWait(300);  // whatever the window manager does with the map comes in by now
    EXPECT_FALSE(netWmState().contains("_NET_WM_STATE_HIDDEN")) << netWmState().toStdString();
    EXPECT_TRUE(netWmState().contains("Normal")) << netWmState().toStdString();
    EXPECT_FALSE(t.cSysTray1.InTray());
    EXPECT_EQ(t.cSysTray1.shownTip(), "");

    // Without a notification area the window goes to the task bar, not out of sight.
    cSysTray::setAvailableOverride(false);
    QTest::keyClick(main, Qt::Key_T, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return netWmState().contains("_NET_WM_STATE_HIDDEN"); }));
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(t.cSysTray1.InTray());
}

}  // namespace
