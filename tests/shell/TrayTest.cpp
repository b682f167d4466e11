// Minimising to the tray: the icon's tip, the menu on the right button's release with its
// rows and their states, and the ways back to the main window.
#include <gtest/gtest.h>

#include "player/PlayerTest.h"
#include "shell/cSysTray.h"
#include "shell/frmTrayIcon.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class TrayTest : public PlayerTest {
  protected:
    void SetUp() override {
        PlayerTest::SetUp();
        cSysTray::setAvailableOverride(true);
        main->show();
    }
    void TearDown() override {
        cSysTray::setAvailableOverride(std::nullopt);
        PlayerTest::TearDown();
    }
    frmTrayIcon& tray() { return Forms::touch<frmTrayIcon>(); }
    void message(int lParam) { tray().cSysTray1.hookMessage(cSysTray::TrayMessage, lParam); }
    QStringList rows(QMenu* menu) {
        QStringList out;
        for (QAction* a : menu->actions())
            if (!a->isSeparator()) out << a->text();
        return out;
    }
};

}  // namespace

TEST_F(TrayTest, MinimisingHidesTheWindowTheIconTellsTheFileAndTheWayBackShowsIt) {
    temp->mnuMinTray->trigger();
    EXPECT_FALSE(main->isVisible());
    EXPECT_TRUE(tray().cSysTray1.InTray());
    EXPECT_FALSE(tray().isVisible());
    EXPECT_EQ(tray().cSysTray1.shownTip(), "Cantovel");
    tray().PrepareMenu();
    EXPECT_FALSE(tray().mnuPause->isEnabled());  // nothing loaded

    openByDialog(media("Song.wav"));
    message(cSysTray::WM_MOUSEMOVE);
    EXPECT_EQ(tray().cSysTray1.shownTip(), "Song.wav - Cantovel");
    // Without moves from the notification area, the tip is renewed by time as well, cut to
    // the field's 63 characters.
    MP().setFileName(media(QString(70, u'x') + ".wav"));
    clock().advance(1000);
    EXPECT_EQ(tray().cSysTray1.shownTip(), QString(63, u'x'));
    EXPECT_EQ(tray().cSysTray1.TrayTip(), QString(70, u'x') + ".wav - Cantovel");

    message(cSysTray::WM_RBUTTONDBLCLK);
    EXPECT_FALSE(main->isVisible());
    message(cSysTray::WM_LBUTTONDBLCLK);
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(tray().cSysTray1.InTray());
    EXPECT_EQ(tray().cSysTray1.shownTip(), "");

    // The menu on the right button's release, its rows following the player's state; its
    // pause row pauses as the main menu's does.
    temp->mnuMinTray->trigger();
    message(cSysTray::WM_RBUTTONUP);
    frmTrayIcon& t = tray();
    ASSERT_TRUE(t.mnuPopup->isVisible());
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
    EXPECT_TRUE(t.mnuPause->isEnabled());
    EXPECT_FALSE(t.popSeekNext->isEnabled());
    t.mnuPause->trigger();
    EXPECT_EQ(temp->mnuPause->text(), "&Resume");
    t.PrepareMenu();
    EXPECT_EQ(t.mnuPause->text(), "Resume");
    t.mnuRestore->trigger();
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(tray().cSysTray1.InTray());

    // Without a notification area the window is minimised, not hidden.
    cSysTray::setAvailableOverride(false);
    temp->mnuMinTray->trigger();
    EXPECT_TRUE(main->isVisible());
    EXPECT_TRUE(main->isMinimized());
    EXPECT_FALSE(tray().cSysTray1.InTray());
}
