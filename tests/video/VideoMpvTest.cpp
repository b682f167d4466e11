// The Vivo film window on the real libmpv player, with null outputs in real time, on a film
// ffmpeg makes for the test.
#include <QFile>
#include <QTest>

#include "VideoTest.h"
#include "support/RealMpv.h"
#include "support/TestFilms.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoMpvTest : public VideoTest {
  protected:
    // Timed play: the film has to outlast the menu commands given while it plays.
    void installPlayers() override {
        PlayerTest::installPlayers();
        RealMpv::install(env, false);
    }
    QString path(const QString& name) const { return tempDir() + u'/' + name; }
    ScopedEnv env;
};

TEST_F(VideoMpvTest, AVivoFilmTakesTheMainWindowsPlaceAndItsMenuWorksItThroughToTheEnd) {
    const QString avi = path(QStringLiteral("Source.avi"));
    ASSERT_TRUE(writeTestFilm(avi, 5.0, QSize(176, 144)));
    const QString film = path(QStringLiteral("Movie.viv"));
    ASSERT_TRUE(QFile::copy(avi, film));

    main->show();
    openByDialog(film);
    frmVivoPlayer* w = vivo();
    ASSERT_NE(w, nullptr);
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Right-Click for Options..."));
    // Fitted to the film and centred on the screen.
    const QSize outer = QSize(176, 144) + ChromeSize(w, w), screen = ScreenSize(w);
    const QRect centred(QPoint((screen - outer).width() / 2, (screen - outer).height() / 2), outer);
    EXPECT_EQ(w->frameGeometry(), centred);
    EXPECT_EQ(w->VvWeb1View->geometry(), QRect(0, 0, 176, 144));
    QStringList states;
    QObject::connect(w->VvWeb1(), &FilmPlayer::StateChange, w,
                     [&states](const QString& s) { states << s; });

    QTest::mouseClick(w->VvWeb1View, Qt::RightButton);
    EXPECT_TRUE(w->MainMenu->isVisible());
    QStringList captions;
    for (QAction* a : w->MainMenu->actions())
        if (!a->isSeparator()) captions << a->text();
    EXPECT_EQ(captions, (QStringList{"Restart", "Stop", "Pause", "Full Screen Mode", "Always Ontop",
                                     "About Movie", "Save As...", "Close"}));
    w->MainMenu->hide();

    // Pause is a stop that keeps the film; Stop drops it; Restart plays it again.
    w->PauseMenu->trigger();
    EXPECT_EQ(w->PauseMenu->text(), QStringLiteral("Resume"));
    w->PauseMenu->trigger();
    EXPECT_EQ(w->PauseMenu->text(), QStringLiteral("Pause"));
    w->StopMenu->trigger();
    EXPECT_FALSE(w->StopMenu->isEnabled());
    w->RestartMenu->trigger();
    EXPECT_TRUE(w->StopMenu->isEnabled());
    EXPECT_EQ(states, (QStringList{"idle", "play_out", "idle", "play_download", "play_out"}));

    // The caption survives a trip to full screen and back, and the fit comes back with it.
    QStringList titles;
    QObject::connect(w, &QWidget::windowTitleChanged, w, [&](const QString& t) { titles << t; });
    w->FullScreenMenu->trigger();
    EXPECT_TRUE(w->windowState() & Qt::WindowMaximized);
    w->FullScreenMenu->trigger();
    EXPECT_FALSE(w->windowState() & Qt::WindowMaximized);
    EXPECT_EQ(titles, (QStringList{QString(), "Right-Click for Options..."}));
    EXPECT_EQ(w->frameGeometry(), centred);

    w->AboutMovieMenu->trigger();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_TRUE(msgBox().texts().first().contains(QStringLiteral("Size: 176 x 144 pixels")));
    EXPECT_TRUE(msgBox().texts().first().contains(QStringLiteral("Movie: Movie.viv")));
    const QString copy = path(QStringLiteral("Copy.viv"));
    dialogs->scriptFiles({copy});
    w->SaveMenu->trigger();
    QFile a(film), b(copy);
    ASSERT_TRUE(a.open(QIODevice::ReadOnly) && b.open(QIODevice::ReadOnly));
    EXPECT_EQ(a.readAll(), b.readAll());

    // The end stops the main window's play but leaves the film's window up.
    ASSERT_TRUE(
        RealMpv::waitFor([&] { return states.contains(QStringLiteral("play_out_complete")); }));
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_FALSE(main->Timer2.isEnabled());
    ASSERT_EQ(vivo(), w);

    // Escape closes it and brings the main window back.
    QTest::keyClick(w, Qt::Key_Escape);
    EXPECT_EQ(vivo(), nullptr);
    EXPECT_TRUE(main->isVisible());
}

}  // namespace
