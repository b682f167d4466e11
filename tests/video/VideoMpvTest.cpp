// The video windows on the real libmpv players, with null outputs in real time, on
// films ffmpeg makes for each test.
#include <QFile>

#include "VideoTest.h"
#include "support/RealMpv.h"
#include "support/TestFilms.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VideoMpvTest : public VideoTest {
  protected:
    // Timed play: the window's wait for the film to start polls every 300 ms, and an untimed
    // film would be over before it looked.
    void installPlayers() override {
        PlayerTest::installPlayers();
        RealMpv::install(env, false);
    }
    QString path(const QString& name) const { return tempDir() + u'/' + name; }
    ScopedEnv env;
};

TEST_F(VideoMpvTest, AVivoNamedFilmRunsThroughItsStatesAndSavesACopy) {
    const QString avi = path(QStringLiteral("Source.avi"));
    ASSERT_TRUE(writeTestFilm(avi, 1.0, QSize(176, 144)));
    const QString film = path(QStringLiteral("Movie.viv"));
    ASSERT_TRUE(QFile::copy(avi, film));

    main->show();
    openByDialog(film);
    frmVivoPlayer* w = Forms::find<frmVivoPlayer>();
    ASSERT_NE(w, nullptr);
    EXPECT_FALSE(main->isVisible());
    QStringList states;
    QObject::connect(w->VvWeb1(), &FilmPlayer::StateChange, w,
                     [&states](const QString& s) { states << s; });
    // Sized at the start, before this test listened.
    EXPECT_EQ(w->size(), QSize(176, 144));
    ASSERT_TRUE(
        RealMpv::waitFor([&] { return states.contains(QStringLiteral("play_out_complete")); }));
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    EXPECT_NE(Forms::find<frmVivoPlayer>(), nullptr);

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

    w->ExitMenu->trigger();
    EXPECT_TRUE(main->isVisible());
}

}  // namespace
