// The single-file video window on fake players and virtual time.
#include <QApplication>
#include <QKeyEvent>
#include <cmath>

#include "VideoTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoPlayerTest : public VideoTest {};

TEST_F(VideoPlayerTest, AFilmFromTheMainWindowShowsOnceItPlaysAtItsNaturalSize) {
    const QString path = film(QStringLiteral("Clip.avi"), 12, QSize(320, 240));
    openByDialog(path);
    frmVideoPlayer* w = player();
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(w->isVisible());
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Cantovel - Video Player"));
    // Nothing shows until the window's wait has seen the film play.
    EXPECT_TRUE(w->MPView->isHidden());
    EXPECT_TRUE(w->Timer2.isEnabled());

    clock().advance(300);
    EXPECT_FALSE(w->MPView->isHidden());
    EXPECT_FALSE(w->Timer2.isEnabled());
    EXPECT_EQ(w->Inside->size(), QSize(320, 240));
    EXPECT_EQ(w->MPView->geometry(), QRect(0, 0, 320, 240));
    EXPECT_EQ(playerMP().DisplaySize(), int(MediaPlayer::mpFitToSize));
    EXPECT_EQ(main->TrackLength, 12);
    EXPECT_TRUE(main->Timer3.isEnabled());
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Stop"));
    EXPECT_EQ(playerMP().Volume(), (int(main->PlayerVolume) - 100) * 100);

    // From now on the picture follows the window.
    w->resize(500, 400);
    EXPECT_EQ(w->MPView->size(), w->Inside->size());
}

TEST_F(VideoPlayerTest, TheWindowIsNeverSmallerThan2000TwipsUnlessMaximised) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi")));
    const double tpp = twips(&w);
    const int least = int(std::ceil(frmVideoPlayer::MinimumTwips / tpp));

    w.resize(40, 300);
    EXPECT_GE(w.frameGeometry().width() * tpp, frmVideoPlayer::MinimumTwips);
    EXPECT_LE(w.frameGeometry().width(), least + 1);
    EXPECT_GE(w.height(), 300);  // the other way is kept

    w.resize(300, 30);
    EXPECT_GE(w.frameGeometry().height() * tpp, frmVideoPlayer::MinimumTwips);
    EXPECT_EQ(w.width(), 300);

    // Maximised, no minimum holds (the window is hidden so that the window system
    // keeps its hands off the size).
    w.hide();
    w.resize(40, 30);
    w.setWindowState(Qt::WindowMaximized);
    w.Form_Resize();
    EXPECT_EQ(w.size(), QSize(40, 30));
    EXPECT_EQ(w.MPView->size(), w.Inside->size());
    w.setWindowState(Qt::WindowNoState);
    w.Form_Resize();
    EXPECT_GE(w.frameGeometry().width() * tpp, frmVideoPlayer::MinimumTwips);
}

TEST_F(VideoPlayerTest, TheFileMenuFollowsThePlayState) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi")));
    w.mnuFile_Click();
    EXPECT_EQ(caption(w.mnuPlay), QStringLiteral("&Stop"));
    EXPECT_EQ(caption(w.mnuPause), QStringLiteral("Pa&use"));
    EXPECT_TRUE(w.mnuPause->isEnabled());
    EXPECT_TRUE(w.mnuSeekF->isEnabled());
    EXPECT_TRUE(w.mnuSeekR->isEnabled());
    EXPECT_FALSE(w.mnuFullScreen->isChecked());

    w.mnuPause_Click();
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpPaused));
    w.mnuFile_Click();
    EXPECT_EQ(caption(w.mnuPause), QStringLiteral("Res&ume"));
    EXPECT_TRUE(w.mnuPause->isEnabled());
    EXPECT_FALSE(w.mnuSeekF->isEnabled());
    EXPECT_FALSE(w.mnuSeekR->isEnabled());

    w.mnuPause_Click();  // resumes
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpPlaying));
    w.mnuFile_Click();
    w.mnuPlay_Click();  // "&Stop"
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpStopped));
    w.mnuFile_Click();
    EXPECT_EQ(caption(w.mnuPlay), QStringLiteral("&Play"));
    EXPECT_FALSE(w.mnuPause->isEnabled());
    EXPECT_FALSE(w.mnuSeekF->isEnabled());

    w.mnuFullScreen_Click();
    EXPECT_TRUE(w.windowState() & Qt::WindowMaximized);
    w.mnuFile_Click();
    EXPECT_TRUE(w.mnuFullScreen->isChecked());
    w.mnuFullScreen_Click();
    EXPECT_FALSE(w.windowState() & Qt::WindowMaximized);
    EXPECT_FALSE(w.mnuFullScreen->isChecked());
}

TEST_F(VideoPlayerTest, SeeksMoveTenWholeSecondsWithNoClampingAtEitherEnd) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi"), 60));
    clock().advance(3300);  // about 3.6 s in
    playerMP().calls.clear();
    w.mnuSeekR_Click();
    EXPECT_EQ(playerMP().calls, QStringList{QStringLiteral("CurrentPosition=-6")});

    playerMP().setCurrentPosition(55.4);
    playerMP().calls.clear();
    w.mnuSeekF_Click();
    EXPECT_EQ(playerMP().calls, QStringList{QStringLiteral("CurrentPosition=65")});
}

TEST_F(VideoPlayerTest, Timer1KeepsTheMainDisplayWithTheFilmButNotDuringAQueue) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi"), 60));
    ASSERT_TRUE(main->Timer3.isEnabled());
    playerMP().Pause();
    main->PlaylistRunning = VTrue;
    clock().advance(200);
    EXPECT_TRUE(main->Timer3.isEnabled());

    main->PlaylistRunning = VFalse;
    clock().advance(200);
    EXPECT_FALSE(main->Timer3.isEnabled());

    // Playing again starts it at once, by the play-state event.
    w.mnuFile_Click();
    w.mnuPause_Click();
    EXPECT_TRUE(main->Timer3.isEnabled());
}

TEST_F(VideoPlayerTest, TheMainDisplayFollowsTheFilmWhileItPlays) {
    openFilm(film(QStringLiteral("Clip.avi"), 10));
    const int start = main->imgPlayProgress.rect.left();
    // Timer1 keeps switching the main display on; that must not hold its ticks back.
    clock().advance(5000);
    EXPECT_GT(main->imgPlayProgress.rect.left(), start + 50);
}

TEST_F(VideoPlayerTest, ThePositionIsSavedInTwipsAndUsedAtTheNextLoad) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi")));
    w.move(210, 150);
    const double tpp = twips(&w);
    const QPoint at = w.pos();
    w.close();
    EXPECT_EQ(player(), nullptr);
    EXPECT_DOUBLE_EQ(Val(ReadAppSetting(QStringLiteral("Video Player Left"), {})), at.x() * tpp);
    EXPECT_DOUBLE_EQ(Val(ReadAppSetting(QStringLiteral("Video Player Top"), {})), at.y() * tpp);

    auto* again = new frmVideoPlayer();
    EXPECT_EQ(again->pos(), at);
}

TEST_F(VideoPlayerTest, ClosingReturnsTheMainWindowToIdleUnlessAStopIsUnderWay) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Clip.avi")));
    main->StopRequested = VTrue;
    w.close();
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Stop"));
    main->PlayStopped();

    frmVideoPlayer& again = openFilm(film(QStringLiteral("Other.avi")));
    main->StopRequested = VFalse;
    ASSERT_TRUE(main->Timer3.isEnabled());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&again, &escape);
    EXPECT_EQ(player(), nullptr);
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_FALSE(main->Timer3.isEnabled());
}

TEST_F(VideoPlayerTest, ASecondFilmFromItsOwnMenuKeepsTheFirstFilmsSize) {
    frmVideoPlayer& w = openFilm(film(QStringLiteral("Small.avi"), 12, QSize(320, 240)));
    const QString big = film(QStringLiteral("Big.mpg"), 30, QSize(640, 480));
    dialogs->scriptFiles({big});
    w.mnuOpen_Click();
    clock().advance(1000);

    const DialogCall& call = dialogs->calls.last();
    EXPECT_EQ(call.request.title, QStringLiteral("Select Video File:"));
    EXPECT_EQ(call.request.filter,
              QStringLiteral("Video "
                             "Formats|*.avi;*.mpg;*.mpa;*.mpv;*.mov;*.qt;*.mpeg;*.enc;*.m1v;*.mp2;"
                             "*.dat"));
    EXPECT_EQ(playerMP().fileName(), big);
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpPlaying));
    EXPECT_EQ(w.Inside->size(), QSize(320, 240));
    EXPECT_EQ(w.MPView->size(), QSize(320, 240));
    // The main window keeps the first film's length, but lists and titles the new one.
    EXPECT_EQ(main->TrackLength, 12);
    EXPECT_EQ(main->List1, QStringList{big});
    EXPECT_EQ(main->TitleText(), QStringLiteral("Big.mpg"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Video Player Directory"), {}), tempDir());
    EXPECT_EQ(caption(w.mnuFileMRU[1]), QStringLiteral("&1. ") + big);
    EXPECT_TRUE(w.mnuFileMRU[1]->isVisible());
}

TEST_F(VideoPlayerTest, ARecentFilmPlaysAndMovesToTheTop) {
    setting("Show Extension", QStringLiteral("0"));
    frmVideoPlayer& w = openFilm(film(QStringLiteral("First.avi")));
    const QString a = film(QStringLiteral("A.avi")), b = film(QStringLiteral("B.avi"));
    for (const QString& path : {a, b}) {
        dialogs->scriptFiles({path});
        w.mnuOpen_Click();
    }
    EXPECT_EQ(caption(w.mnuFileMRU[1]), QStringLiteral("&1. ") + b);
    EXPECT_EQ(caption(w.mnuFileMRU[2]), QStringLiteral("&2. ") + a);

    w.mnuFileMRU_Click(2);
    EXPECT_EQ(playerMP().fileName(), a);
    EXPECT_EQ(playerMP().PlayState(), int(MediaPlayer::mpPlaying));
    EXPECT_EQ(caption(w.mnuFileMRU[1]), QStringLiteral("&1. ") + a);
    EXPECT_EQ(main->TitleText(), QStringLiteral("A"));

    // The list outlives the window.
    w.close();
    auto* again = new frmVideoPlayer();
    EXPECT_EQ(caption(again->mnuFileMRU[2]), QStringLiteral("&2. ") + b);
    EXPECT_TRUE(again->mnuFileMRU[0]->isVisible());
}

TEST_F(VideoPlayerTest, AFilmThePlayerRefusesLeavesThePictureHidden) {
    const QString bad = file(QStringLiteral("Broken.avi"));  // no length: refused
    auto* w = new frmVideoPlayer();
    w->show();
    w->MP()->setFileName(bad);
    w->MP()->Play();
    clock().advance(3000);
    EXPECT_TRUE(w->MPView->isHidden());
    EXPECT_TRUE(w->Timer2.isEnabled());
}

TEST_F(VideoPlayerTest, TheZoomEntriesStandInTheVideoPopUp) {
    openFilm(film(QStringLiteral("Clip.avi")));
    QStringList captions;
    for (QAction* a : temp->popZoom->actions()) captions << a->text();
    EXPECT_EQ(captions, (QStringList{"Original Size", "Full Screen (Normal - Advanced Options)",
                                     "Full Screen (Stretch)", "Half Screen", "Quarter Screen",
                                     "Double Original Size"}));
    const QSize before = player()->size();
    for (QAction* a : temp->popZoom->actions()) a->trigger();
    EXPECT_EQ(player()->size(), before);
    EXPECT_EQ(playerMP().DisplaySize(), int(MediaPlayer::mpFitToSize));
}

}  // namespace
