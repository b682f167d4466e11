// The Video CD player: its MCI control over the fake device, and over the real one on a
// machine with no Video CD.
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QToolButton>

#include "VideoTest.h"
#include "platform/videocd/CdioVideoCdDevice.h"
#include "player/HelpFile.h"
#include "support/FakeVideoCdDevice.h"
#include "support/ScopedEnv.h"
#include "video/MMControl.h"
#include "video/frmVideoCDPlayer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoCdPlayerTest : public VideoTest {
  protected:
    frmVideoCDPlayer* window() { return Forms::find<frmVideoCDPlayer>(); }
    static QStringList enabledButtons(const MMControl& c) {
        QStringList names;
        for (int b = 0; b < MMControl::ButtonCount; ++b)
            if (c.button(MMControl::Button(b))->isEnabled())
                names << c.button(MMControl::Button(b))->objectName();
        return names;
    }
    void press(const MMControl& c, MMControl::Button b) { c.button(b)->click(); }
    ScopedEnv env;
};

TEST_F(VideoCdPlayerTest, AMachineWithNoVideoCdOpensADeadButtonRow) {
    // The real device, pointed at no disc at all and at a file that is no disc.
    Components::provideFactory<VideoCdDevice>([] { return std::make_unique<CdioVideoCdDevice>(); });
    for (const QString& source : {tempDir() + QStringLiteral("/no-such-drive"),
                                  file(QStringLiteral("notes.cue"), "junk")}) {
        env.set("CANTOVEL_VIDEOCD", source);
        temp->mnuAdvVideoCDPlayer->trigger();
        frmVideoCDPlayer* w = window();
        ASSERT_NE(w, nullptr);
        EXPECT_EQ(w->windowTitle(), QStringLiteral("Cantovel - Video CD Player"));
        EXPECT_TRUE(enabledButtons(*w->MMControl1).isEmpty());
        EXPECT_NE(w->MMControl1->Error(), 0);
        EXPECT_TRUE(msgBox().shown.isEmpty());  // it says nothing
        press(*w->MMControl1, MMControl::Play);
        w->ExitMenu->trigger();
        EXPECT_EQ(window(), nullptr);
    }
}

TEST_F(VideoCdPlayerTest, TheButtonsFollowTheDevicesModeF1OpensHelpAndClosingClosesTheDevice) {
    const QString help = tempDir() + QStringLiteral("/help");
    QDir().mkpath(help);
    env.set("CANTOVEL_HELP_DIR", help);
    QFile page(HelpTopicPath(QStringLiteral("Video CD Player (Standalone)")));
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.close();

    FakeVideoCdDevice::install(2);
    temp->mnuAdvVideoCDPlayer->trigger();
    frmVideoCDPlayer* w = window();
    MMControl& c = *w->MMControl1;
    QPointer<FakeVideoCdDevice> d = FakeVideoCdDevice::latest();
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Next", "Play", "Step", "Eject"}));
    press(c, MMControl::Play);
    EXPECT_EQ(enabledButtons(c),
              (QStringList{"Prev", "Next", "Pause", "Back", "Step", "Stop", "Eject"}));
    press(c, MMControl::Next);  // the last entry: no further
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Pause", "Back", "Step", "Stop", "Eject"}));
    press(c, MMControl::Pause);
    EXPECT_EQ(enabledButtons(c), (QStringList{"Prev", "Play", "Back", "Step", "Stop", "Eject"}));
    c.setCommand(QStringLiteral("STOP"));
    c.setCommand(QStringLiteral("rewind"));
    // It takes no part in the main window's play.
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));

    QKeyEvent f1(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier);
    QApplication::sendEvent(w, &f1);
    ASSERT_EQ(shell->opened.size(), 1);
    EXPECT_TRUE(shell->opened.first().endsWith(QFileInfo(page).fileName()));

    QStringList calls;
    QObject::connect(d, &VideoCdDevice::ModeChanged, w, [&calls, &d] { calls = d->calls; });
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(w, &escape);
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(calls, (QStringList{"Open", "Play", "Next", "Pause", "Stop", "Close"}));

    // Eject leaves no button; only the Video CD device type is provided.
    temp->mnuAdvVideoCDPlayer->trigger();
    press(*window()->MMControl1, MMControl::Eject);
    EXPECT_TRUE(enabledButtons(*window()->MMControl1).isEmpty());
    MMControl other;
    other.DeviceType = QStringLiteral("CDAudio");
    other.setCommand(QStringLiteral("open"));
    EXPECT_TRUE(enabledButtons(other).isEmpty());
}

}  // namespace
