// The Video CD player's button row on the real device: no disc at all, a file that is no
// disc, and a disc image ffmpeg makes.
#include <QTest>
#include <QToolButton>

#include "VideoTest.h"
#include "platform/videocd/CdioVideoCdDevice.h"
#include "support/RealMpv.h"
#include "support/TestVideoCd.h"
#include "video/MMControl.h"
#include "video/frmVideoCDPlayer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoCdPlayerTest : public VideoTest {
  protected:
    void installPlayers() override {
        RealMpv::install(env, false);
        Components::provideFactory<VideoCdDevice>(
            [] { return std::make_unique<CdioVideoCdDevice>(); });
    }
    frmVideoCDPlayer* window() { return Forms::find<frmVideoCDPlayer>(); }
    static QStringList enabledButtons(const MMControl& c) {
        QStringList names;
        for (int b = 0; b < MMControl::ButtonCount; ++b)
            if (c.button(MMControl::Button(b))->isEnabled())
                names << c.button(MMControl::Button(b))->objectName();
        return names;
    }
    static void press(const MMControl& c, MMControl::Button b) { c.button(b)->click(); }
    ScopedEnv env;
};

TEST_F(VideoCdPlayerTest, TheButtonsAreDeadWithoutADiscAndFollowThePlayOfOneAndF1OpensHelp) {
    // No disc at all, and a file that is no disc: a dead row, and nothing said.
    for (const QString& source : {tempDir() + QStringLiteral("/no-such-drive"),
                                  file(QStringLiteral("notes.cue"), "junk")}) {
        env.set("CANTOVEL_VIDEOCD", source);
        temp->mnuAdvVideoCDPlayer->trigger();
        frmVideoCDPlayer* w = window();
        ASSERT_NE(w, nullptr);
        EXPECT_EQ(w->windowTitle(), QStringLiteral("Cantovel - Video CD Player"));
        EXPECT_TRUE(enabledButtons(*w->MMControl1).isEmpty());
        EXPECT_NE(w->MMControl1->Error(), 0);
        press(*w->MMControl1, MMControl::Play);
        w->ExitMenu->trigger();
        EXPECT_EQ(window(), nullptr);
    }
    EXPECT_TRUE(msgBox().shown.isEmpty());

    const QString cue = tempDir() + QStringLiteral("/disc.cue");
    // Films long enough to outlast the presses.
    ASSERT_TRUE(writeVideoCdImage(cue, 2, 5));
    env.set("CANTOVEL_VIDEOCD", cue);
    QTest::keyClick(main, Qt::Key_F12);
    frmVideoCDPlayer* w = window();
    ASSERT_NE(w, nullptr);
    MMControl& c = *w->MMControl1;
    ASSERT_EQ(c.Error(), 0) << qPrintable(c.ErrorMessage());
    // An image has no door to open: no Eject.
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Next", "Play", "Step"}));
    press(c, MMControl::Play);
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Next", "Pause", "Back", "Step", "Stop"}));
    press(c, MMControl::Next);  // the last entry: no further
    EXPECT_EQ(c.device()->Entry(), 2);
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Pause", "Back", "Step", "Stop"}));
    press(c, MMControl::Pause);
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Play", "Back", "Step", "Stop"}));
    press(c, MMControl::Back);
    press(c, MMControl::Step);
    press(c, MMControl::Stop);
    press(c, MMControl::Prev);
    EXPECT_EQ(c.device()->Entry(), 1);
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Next", "Play", "Step"}));
    c.setCommand(QStringLiteral("rewind"));
    EXPECT_NE(c.Error(), 0);
    // It takes no part in the main window's play.
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));

    // F1 asks for its help page, and here there is no help at all.
    env.set("CANTOVEL_HELP_DIR", tempDir() + QStringLiteral("/no-help"));
    QTest::keyClick(w, Qt::Key_F1);
    EXPECT_EQ(msgBox().texts(),
              QStringList{"The Cantovel Help compoents seems to have been deleted, moved, or "
                          "renamed; please reinstall Cantovel or replace the help components "
                          "otherwise in order to use the help system."});
    QTest::keyClick(w, Qt::Key_Escape);
    EXPECT_EQ(window(), nullptr);

    // An eject of an image takes the disc away; only the Video CD device type is provided.
    temp->mnuAdvVideoCDPlayer->trigger();
    window()->MMControl1->setCommand(QStringLiteral("eject"));
    EXPECT_TRUE(enabledButtons(*window()->MMControl1).isEmpty());
    MMControl other;
    other.DeviceType = QStringLiteral("CDAudio");
    other.setCommand(QStringLiteral("open"));
    EXPECT_TRUE(enabledButtons(other).isEmpty());
}

}  // namespace
