// The Video CD device on libcdio and libmpv, over a disc image the test makes.
#include <QToolButton>

#include "VideoTest.h"
#include "platform/clock/QtClock.h"
#include "platform/videocd/CdioVideoCdDevice.h"
#include "support/ScopedEnv.h"
#include "support/TestVideoCd.h"
#include "video/MMControl.h"
#include "video/frmVideoCDPlayer.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoCdMpvTest : public VideoTest {
  protected:
    void installPlayers() override {
        VideoTest::installPlayers();
        env.set("CANTOVEL_AO", QByteArray("null"));
        env.set("CANTOVEL_VO", QByteArray("null"));
        env.set("CANTOVEL_MPV_UNTIMED", QByteArray("1"));
        Components::provideService<Clock>(std::make_shared<QtClock>());
        Components::provideFactory<VideoCdDevice>(
            [] { return std::make_unique<CdioVideoCdDevice>(); });
    }
    ScopedEnv env;
};

TEST_F(VideoCdMpvTest, TheFilmsOfADiscImagePlayOneAfterAnother) {
    const QString cue = tempDir() + QStringLiteral("/disc.cue");
    ASSERT_TRUE(writeVideoCdImage(cue, 2, 2.0));
    env.set("CANTOVEL_VIDEOCD", cue);

    temp->mnuAdvVideoCDPlayer_Click();
    frmVideoCDPlayer* w = Forms::find<frmVideoCDPlayer>();
    ASSERT_NE(w, nullptr);
    MMControl& c = *w->MMControl1;
    ASSERT_EQ(c.Error(), 0) << qPrintable(c.ErrorMessage());
    VideoCdDevice& disc = *c.device();
    EXPECT_EQ(disc.Entries(), 2);
    EXPECT_FALSE(c.button(MMControl::Eject)->isEnabled());  // an image has no door

    QList<int> entries;
    QObject::connect(&disc, &VideoCdDevice::ModeChanged, w, [&](int mode) {
        if (mode == VideoCdDevice::Playing) entries << disc.Entry();
    });
    c.button(MMControl::Play)->click();
    EXPECT_EQ(c.Mode(), int(VideoCdDevice::Playing));
    ASSERT_TRUE(Clock::get().wait(30000, [&] { return c.Mode() == VideoCdDevice::Stopped; }));
    EXPECT_EQ(entries, (QList<int>{1, 2}));
    auto* display = static_cast<CdioVideoCdDevice&>(disc).Display();
    ASSERT_NE(display, nullptr);

    w->close();
}

}  // namespace
