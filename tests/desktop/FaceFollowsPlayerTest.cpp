// The main window's elapsed digits, read back from the painted face, while files play in
// the real players on a real desktop: the face follows whichever player plays the file the
// user chose, and goes back to idle at its end.
#include <gtest/gtest.h>

#include <QLocalSocket>
#include <QStandardPaths>
#include <QTest>

#include "app/Forms.h"
#include "app/SubMain.h"
#include "platform/Components.h"
#include "player/PlayerWindows.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "playlist/frmPlaylist.h"
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/DesktopSession.h"
#include "support/FakeFileDialogs.h"
#include "support/RealMpv.h"
#include "support/ScopedEnv.h"
#include "support/TestFilms.h"
#include "video/frmVideoPlayer.h"
#include "video/frmVideoPlaylistView.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const bool desktop = requestDesktopSession();

class FaceFollowsPlayerTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        REQUIRE_DESKTOP_SESSION();
        // The program as it runs, on real players, with files chosen by the test.
        useProgramComponents();
        RealMpv::install(env, false, {}, true);
        Components::provideService<FileDialogs>(dialogs);
        ASSERT_EQ(SubMain({QStringLiteral("cantovel")}), -1);
        main = frmMain::instance();
        ASSERT_TRUE(main && QTest::qWaitForWindowExposed(main));
    }
    static bool playing(const MediaPlayer* mp) {
        return mp && mp->PlayState() == MediaPlayer::mpPlaying;
    }
    QString tone(const QString& name, double seconds) {
        const QString path = tempDir() + u'/' + name;
        EXPECT_TRUE(writeTone(path, seconds));
        return path;
    }

    // The six elapsed digits as the face paints them, '-' for a blank cell.
    QString elapsedOnFace() {
        const QImage face = main->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QString shown;
        for (int i = 0; i < 6; ++i) {
            QChar c = u'?';
            for (int d = 0; d < 10; ++d) {
                const QImage digit =
                    main->clpDigits.GraphicCell(d).toImage().convertToFormat(QImage::Format_RGB32);
                if (face.copy(QRect(main->imgTime[i].rect.topLeft(), digit.size())) == digit)
                    c = QChar(u'0' + d);
            }
            shown += c;
        }
        return shown;
    }
    // Once `mp` has played three seconds, says whether the face shows that, to the second.
    ::testing::AssertionResult faceFollows(MediaPlayer* mp) {
        if (!RealMpv::waitFor([&] { return mp->CurrentPosition() >= 3; }))
            return ::testing::AssertionFailure() << "the file never played three seconds";
        QString shown;
        double at = 0;
        // The face's timer ticks ten times a second; a busy machine may delay a few ticks.
        RealMpv::waitFor(
            [&] {
                shown = elapsedOnFace();
                at = mp->CurrentPosition();
                return shown.toInt() >= 3 && shown.toInt() <= at + 1;
            },
            3000);
        if (shown.toInt() >= 3 && shown.toInt() <= at + 1) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "the face shows " << shown.toStdString() << " while the file is at " << at;
    }
    // Idle: the thumb back at the groove's start and the File menu offering to open.
    bool idle() {
        return main->imgPlayProgress.Left() == 16 &&
               frmTemp::get().mnuPlay->text() == QLatin1String("&Open...");
    }

    ScopedEnv env;
    std::shared_ptr<FakeFileDialogs> dialogs = std::make_shared<FakeFileDialogs>();
    frmMain* main = nullptr;
};

TEST_F(FaceFollowsPlayerTest, AHandOffBesideAFinishedFilmAndThenARowOfTheEditorDriveTheFace) {
    if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
        GTEST_SKIP() << "skipped: ffmpeg is missing, and with it the test film";
    const QString film = tempDir() + QStringLiteral("/Short.avi");
    ASSERT_TRUE(writeTestFilm(film, 1.5));
    const QString longer = tone(QStringLiteral("Longer.wav"), 60);
    const QString row = tone(QStringLiteral("Row.wav"), 6);
    dialogs->scriptFiles({film});
    QTest::keyClick(main, Qt::Key_O, Qt::ControlModifier);
    auto* video = Forms::find<frmVideoPlayer>();
    ASSERT_TRUE(video && RealMpv::waitFor([&] { return playing(video->MP()); }));
    ASSERT_TRUE(RealMpv::waitFor([&] { return !playing(video->MP()); }));
    ASSERT_TRUE(video->isVisible());

    // A later start hands a song over while the finished film's window stays.
    QLocalSocket later;
    later.connectToServer(qEnvironmentVariable("XDG_RUNTIME_DIR") +
                          QStringLiteral("/cantovel.socket"));
    ASSERT_TRUE(later.waitForConnected(10000));
    later.write(longer.toUtf8() + '\n');
    later.flush();
    MediaPlayer* hidden = frmTemp::get().MP.get();
    ASSERT_TRUE(RealMpv::waitFor([&] { return playing(hidden); }));
    EXPECT_EQ(hidden->fileName(), longer);
    EXPECT_TRUE(faceFollows(hidden));

    // A row double-clicked in the playlist editor takes over from it.
    QTest::keyClick(main, Qt::Key_E, Qt::ControlModifier);
    auto* editor = Forms::find<frmPlaylist>();
    ASSERT_TRUE(editor && QTest::qWaitForWindowExposed(editor));
    dialogs->scriptFiles({row});
    editor->mnuAdd();
    ASSERT_EQ(editor->lstPlayListCount(), 2);
    QWidget* rows = editor->lstPlayList->viewport();
    QTest::mouseDClick(
        rows, Qt::LeftButton, {},
        editor->lstPlayList->visualRect(editor->lstPlayList->model()->index(1, 0)).center());

    QueueView* queue = nullptr;
    ASSERT_TRUE(RealMpv::waitFor(
        [&] { return (queue = loadedWindow<QueueView>()) && playing(queue->AM()); }));
    EXPECT_EQ(queue->AM()->fileName(), row);
    EXPECT_FALSE(playing(hidden)) << "two files sound at once";
    EXPECT_TRUE(faceFollows(queue->AM()));
    EXPECT_TRUE(RealMpv::waitFor([&] { return idle(); }));
}

}  // namespace
