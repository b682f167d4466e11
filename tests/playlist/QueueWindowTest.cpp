// The queue's picture window on a fake player: hidden for sound, shown for films, its menus
// following the play, and closing it ends the run.
#include <gtest/gtest.h>

#include <QMenu>
#include <QTest>

#include "PlaylistTest.h"
#include "video/frmVideoPlaylistView.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class QueueWindowTest : public PlayerTest {
  protected:
    frmVideoPlaylistView* view() {
        return dynamic_cast<frmVideoPlaylistView*>(loadedWindow<QueueView>());
    }
    FakeMediaPlayer* am() { return view() ? static_cast<FakeMediaPlayer*>(view()->AM()) : nullptr; }
    // A click on the picture sets the pop-up menu's items by the play state.
    static void clickPicture(frmVideoPlaylistView* window) {
        QTest::mouseClick(window->AMWidget(), Qt::LeftButton);
    }
};

TEST_F(QueueWindowTest, SoundStaysHiddenAFilmShowsInItsTitledWindowAndClosingItEndsTheRun) {
    const QString song = media("a.mp3");
    const QString film = media("b.avi");
    FakeMediaPlayer::setPicture(film, QSize(160, 120));
    main->PlayerVolume = 40;
    main->List1 = {song, film};
    temp->mnuRunPlaylist->trigger();
    ASSERT_NE(view(), nullptr);
    EXPECT_FALSE(view()->isVisible());
    EXPECT_EQ(am()->Volume(), -6000);
    EXPECT_EQ(main->TrackLength, 10) << "the open reaches the main window";

    am()->playToEnd();
    ASSERT_NE(view(), nullptr);
    EXPECT_TRUE(view()->isVisible());
    EXPECT_TRUE(view()->AMWidget()->isVisible());
    EXPECT_EQ(view()->AMWidget()->size(), QSize(160, 120));
    EXPECT_EQ(view()->windowTitle(), QStringLiteral("Cantovel Video Play:  b.avi"));

    FakeMediaPlayer* player = am();
    EXPECT_TRUE(view()->close());
    EXPECT_EQ(main->PlaylistRunning, VFalse);
    EXPECT_EQ(player->PlayState(), MediaPlayer::mpStopped);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_NE(ReadAppSetting("Video Playlist Viewer Top", ""), QString());
}

TEST_F(QueueWindowTest, FullScreenOpensWithNoCaptionMenusFollowThePlayStateRestartReloads) {
    setting("Playlist Full Screen", QStringLiteral("True"));
    main->CurrentFile = media("c.avi");
    auto* window = new frmVideoPlaylistView();
    EXPECT_TRUE(window->windowState() & Qt::WindowMaximized);
    EXPECT_EQ(window->windowTitle(), QString());
    auto* player = static_cast<FakeMediaPlayer*>(window->AM());
    clickPicture(window);
    EXPECT_FALSE(window->popPause->isEnabled());
    EXPECT_FALSE(window->popStop->isEnabled());

    window->popRestart->trigger();
    EXPECT_EQ(player->fileName(), main->CurrentFile);
    EXPECT_EQ(player->PlayState(), MediaPlayer::mpPlaying);
    clickPicture(window);
    EXPECT_TRUE(window->popSeekF->isEnabled());
    EXPECT_EQ(window->popPause->text(), QStringLiteral("Pause"));
    window->popPause->trigger();
    EXPECT_EQ(player->PlayState(), MediaPlayer::mpPaused);
    clickPicture(window);
    EXPECT_EQ(window->popPause->text(), QStringLiteral("Resume"));
    EXPECT_FALSE(window->popSeekF->isEnabled());
    window->mnuFile->popup(QPoint());
    EXPECT_EQ(window->mnuPlay->text(), QStringLiteral("&Stop"));
    EXPECT_EQ(window->mnuPause->text(), QStringLiteral("Res&ume"));
    window->mnuFile->hide();
}

}  // namespace
