// The single-file video window on fake players and virtual time.
#include <QApplication>
#include <QKeyEvent>
#include <cmath>

#include "VideoTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoPlayerTest : public VideoTest {};

TEST_F(VideoPlayerTest, TheFileMenuFollowsThePlayStateSeeksMoveTenWholeSecondsAndSizesHold) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi"), 60));
    w.mnuFile_Click();
    EXPECT_EQ(caption(w.mnuPlay), QStringLiteral("&Stop"));
    EXPECT_EQ(caption(w.mnuPause), QStringLiteral("Pa&use"));
    w.mnuPause->trigger();
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpPaused));
    w.mnuFile_Click();
    EXPECT_EQ(caption(w.mnuPause), QStringLiteral("Res&ume"));
    EXPECT_FALSE(w.mnuSeekF->isEnabled());
    w.mnuPause->trigger();  // resumes
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpPlaying));

    clock().advance(3300);  // about 3.6 s in
    w.mnuFile_Click();
    playerMP().calls.clear();
    w.mnuSeekR->trigger();  // no clamping at either end
    EXPECT_EQ(playerMP().calls, QStringList{QStringLiteral("CurrentPosition=-6")});
    playerMP().setCurrentPosition(55.4);
    playerMP().calls.clear();
    w.mnuSeekF->trigger();
    EXPECT_EQ(playerMP().calls, QStringList{QStringLiteral("CurrentPosition=65")});

    w.mnuFile_Click();
    w.mnuPlay->trigger();  // "&Stop"
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpStopped));
    w.mnuFile_Click();
    EXPECT_EQ(caption(w.mnuPlay), QStringLiteral("&Play"));

    w.mnuFullScreen->trigger();
    EXPECT_TRUE(w.windowState() & Qt::WindowMaximized);
    w.mnuFile_Click();
    w.mnuFullScreen->trigger();
    EXPECT_FALSE(w.windowState() & Qt::WindowMaximized);

    // Never smaller than 2000 twips unless maximised.
    const double tpp = TwipsPerPixel(&w);
    const int least = int(std::ceil(frmVideoPlayer::MinimumTwips / tpp));
    w.resize(40, 300);
    EXPECT_GE(w.frameGeometry().width() * tpp, frmVideoPlayer::MinimumTwips);
    EXPECT_LE(w.frameGeometry().width(), least + 1);
    w.resize(300, 30);
    EXPECT_GE(w.frameGeometry().height() * tpp, frmVideoPlayer::MinimumTwips);
    // Maximised, no minimum holds (hidden, so that the window system keeps off the size).
    w.hide();
    w.resize(40, 30);
    w.setWindowState(Qt::WindowMaximized);
    w.Form_Resize();
    EXPECT_EQ(w.size(), QSize(40, 30));
    w.setWindowState(Qt::WindowNoState);
    w.Form_Resize();
    EXPECT_GE(w.frameGeometry().width() * tpp, frmVideoPlayer::MinimumTwips);
}

TEST_F(VideoPlayerTest, FilmsFromItsOwnMenuKeepTheFirstSizeAndTheRecentListAndPlaceOutliveIt) {
    setting("Show Extension", QStringLiteral("0"));
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Small.avi"), 12, QSize(320, 240)));
    const QString a = film(QStringLiteral("A.avi")), big = film("Big.mpg", 30, QSize(640, 480));
    for (const QString& path : {a, big}) {
        dialogs->scriptFiles({path});
        w.mnuOpen->trigger();
        clock().advance(1000);
    }
    EXPECT_EQ(dialogs->calls.last().request.title, QStringLiteral("Select Video File:"));
    EXPECT_EQ(playerMP().fileName(), big);
    EXPECT_EQ(w.Inside->size(), QSize(320, 240));
    // The main window keeps the first film's length, but lists and titles the new one.
    EXPECT_EQ(main->List1, QStringList{big});
    EXPECT_EQ(main->TitleText(), QStringLiteral("Big"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Video Player Directory"), {}), tempDir());
    EXPECT_EQ(caption(w.mnuFileMRU[1]), QStringLiteral("&1. ") + big);
    EXPECT_EQ(caption(w.mnuFileMRU[2]), QStringLiteral("&2. ") + a);

    w.mnuFileMRU[2]->trigger();
    EXPECT_EQ(playerMP().fileName(), a);
    EXPECT_EQ(main->TitleText(), QStringLiteral("A"));

    w.move(210, 150);
    const double tpp = TwipsPerPixel(&w);
    const QPoint at = w.pos();
    w.close();
    EXPECT_DOUBLE_EQ(Val(ReadAppSetting(QStringLiteral("Video Player Left"), {})), at.x() * tpp);
    EXPECT_DOUBLE_EQ(Val(ReadAppSetting(QStringLiteral("Video Player Top"), {})), at.y() * tpp);
    auto* again = new frmVideoPlayer();
    EXPECT_EQ(again->pos(), at);
    EXPECT_EQ(caption(again->mnuFileMRU[2]), QStringLiteral("&2. ") + big);
}

}  // namespace
