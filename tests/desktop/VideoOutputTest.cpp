// The film windows on a real X server and window manager, with mpv's real video output:
// what a user sees on the screen, read back from the screen's pixels, through the commands
// that used to take the picture away or move the windows.
#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QToolButton>

#include "../video/VideoTest.h"
#include "platform/videocd/CdioVideoCdDevice.h"
#include "support/DesktopSession.h"
#include "support/RealMpv.h"
#include "support/ScopedEnv.h"
#include "support/TestFilms.h"
#include "support/TestVideoCd.h"
#include "video/MMControl.h"
#include "video/frmVideoCDPlayer.h"
#include "video/frmVideoPlaylistView.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const bool desktop = requestDesktopSession();

const QColor kRed(255, 0, 0), kBlue(0, 0, 255);

class VideoOutputTest : public VideoTest {
  protected:
    void SetUp() override {
        const QString missing = desktopSessionMissing();
        if (!missing.isEmpty()) GTEST_SKIP() << missing.toStdString();
        if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
            GTEST_SKIP() << "skipped: ffmpeg is missing, and with it the test films";
        VideoTest::SetUp();
    }
    void installPlayers() override {
        RealMpv::install(env, false, {}, true);
        Components::provideFactory<VideoCdDevice>(
            [] { return std::make_unique<CdioVideoCdDevice>(); });
    }
    QString solidFilm(const QString& name, const QString& colour, double seconds = 10,
                      QSize size = QSize(320, 240)) {
        const QString path = tempDir() + u'/' + name;
        EXPECT_TRUE(writeTestFilm(path, seconds, size, colour)) << qPrintable(name);
        return path;
    }
    // The colour the screen shows at `at` inside `w` (its centre by default).
    static QColor screenColour(const QWidget* w, QPoint at = QPoint(-1, -1)) {
        if (at.x() < 0) at = w->rect().center();
        const QPoint g = w->mapToGlobal(at);
        const QImage pixel =
            QGuiApplication::primaryScreen()->grabWindow(0, g.x(), g.y(), 1, 1).toImage();
        return pixel.isNull() ? QColor() : pixel.pixelColor(0, 0);
    }
    static bool near(const QColor& a, const QColor& b) {
        return std::abs(a.red() - b.red()) < 48 && std::abs(a.green() - b.green()) < 48 &&
               std::abs(a.blue() - b.blue()) < 48;
    }
    // Waits until the screen shows `colour` inside `w`; on failure says what it showed.
    static ::testing::AssertionResult shows(const QWidget* w, const QColor& colour,
                                            QPoint at = QPoint(-1, -1)) {
        QColor seen;
        const bool ok = RealMpv::waitFor([&] {
            seen = screenColour(w, at);
            return w->isVisible() && near(seen, colour);
        });
        if (ok) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the screen shows " << seen.name().toStdString()
                                             << " instead of " << colour.name().toStdString();
    }
    static bool maximised(const QWidget* w) {
        const QRect avail = QGuiApplication::primaryScreen()->availableGeometry();
        return w->isMaximized() && OuterGeometry(w).width() == avail.width();
    }
    // Keys pressed on the X server, where a user's keys come from, into the active window.
    static void typeKeys(QWidget* w, const QStringList& keys) {
        w->activateWindow();
        ASSERT_TRUE(RealMpv::waitFor([&] { return w->isActiveWindow(); }, 10000));
        for (const QString& key : keys) {
            QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), key});
            Clock::get().wait(150);
        }
    }
    static QPoint savedPlace(const char* top, const char* left) {
        return QPoint(int(Val(ReadAppSetting(QLatin1String(left), QString()))),
                      int(Val(ReadAppSetting(QLatin1String(top), QString()))));
    }

    ScopedEnv env;
};

TEST_F(VideoOutputTest, AnMp4FromTheCommandLineKeepsItsPlaceShowsThroughFullScreenAndEscapeCloses) {
    const QString film = solidFilm(QStringLiteral("Red.mp4"), QStringLiteral("red"), 30);
    QPoint place;
    for (int cycle = 0; cycle < 5; ++cycle) {
        main->OpenCommandLine(film);
        frmVideoPlayer* w = video();
        ASSERT_NE(w, nullptr);
        ASSERT_TRUE(shows(w->MPView, kRed)) << "cycle " << cycle;
        // Its title bar is on the screen, where the user can take it.
        EXPECT_TRUE(RealMpv::waitFor([&] { return OuterGeometry(w).top() >= 0; }, 10000))
            << qPrintable(QDebug::toString(OuterGeometry(w)));
        w->close();
        ASSERT_EQ(Forms::find<frmVideoPlayer>(), nullptr);
        const QPoint saved = savedPlace("Video Player Top", "Video Player Left");
        if (cycle > 0) {
            EXPECT_EQ(saved, place) << "cycle " << cycle;
        }
        place = saved;
    }

    openByDialog(film);
    frmVideoPlayer* w = video();
    ASSERT_NE(w, nullptr);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_TRUE(shows(w->MPView, kRed));
    w->mnuFullScreen->trigger();
    ASSERT_TRUE(RealMpv::waitFor([&] {
        return maximised(w) && w->MPView->size() == w->Inside->size();
    })) << w->isMaximized()
        << " " << qPrintable(QDebug::toString(OuterGeometry(w))) << " "
        << qPrintable(QDebug::toString(w->MPView->size())) << " "
        << qPrintable(QDebug::toString(w->Inside->size()));
    EXPECT_TRUE(shows(w->MPView, kRed));
    w->mnuFullScreen->trigger();
    ASSERT_TRUE(RealMpv::waitFor([&] { return !w->isMaximized(); }));
    EXPECT_FALSE(w->mnuFullScreen->isChecked());
    EXPECT_TRUE(shows(w->MPView, kRed));

    if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty()) {
        GTEST_SKIP() << "skipped the keys: xdotool is missing";
    }
    // Into the menu from the keyboard and out again (Escape closes the menu, Escape leaves
    // the menu bar); then Escape is the window's again.
    typeKeys(w, {QStringLiteral("alt+f")});
    ASSERT_TRUE(
        RealMpv::waitFor([] { return QApplication::activePopupWidget() != nullptr; }, 10000));
    typeKeys(w, {QStringLiteral("Escape"), QStringLiteral("Escape"), QStringLiteral("Escape")});
    EXPECT_TRUE(RealMpv::waitFor([] { return Forms::find<frmVideoPlayer>() == nullptr; }, 10000));
}

TEST_F(VideoOutputTest, AQueueKeepsItsPictureOnTopAndOnToTheNextEntryAndItsWindowItsPlace) {
    const QString red = solidFilm(QStringLiteral("Red.mp4"), QStringLiteral("red"), 12);
    const QString blue = solidFilm(QStringLiteral("Blue.avi"), QStringLiteral("blue"), 30);
    const QString list = tempDir() + QStringLiteral("/films.m3u");
    QFile m3u(list);
    ASSERT_TRUE(m3u.open(QIODevice::WriteOnly));
    m3u.write((red + QStringLiteral("\r\n") + blue + QStringLiteral("\r\n")).toLocal8Bit());
    m3u.close();

    openByDialog(list);
    auto* w = Forms::find<frmVideoPlaylistView>();
    ASSERT_NE(w, nullptr);
    ASSERT_TRUE(shows(w->AMWidget(), kRed));
    EXPECT_TRUE(RealMpv::waitFor([&] { return OuterGeometry(w).top() >= 0; }, 10000));

    w->OntopMenu->trigger();
    ASSERT_TRUE(
        RealMpv::waitFor([&] { return bool(w->windowFlags() & Qt::WindowStaysOnTopHint); }));
    EXPECT_TRUE(shows(w->AMWidget(), kRed));
    w->OntopMenu->trigger();
    ASSERT_TRUE(RealMpv::waitFor([&] { return !(w->windowFlags() & Qt::WindowStaysOnTopHint); }));
    EXPECT_TRUE(shows(w->AMWidget(), kRed));

    // The second entry comes in the same window.
    ASSERT_TRUE(RealMpv::waitFor([&] { return w->AM()->fileName() == blue; }));
    EXPECT_TRUE(shows(w->AMWidget(), kBlue));
    w->close();
    ASSERT_EQ(Forms::find<frmVideoPlaylistView>(), nullptr);

    // Loaded and unloaded again and again, the window stays where it was.
    const QPoint place = savedPlace("Video Playlist Viewer Top", "Video Playlist Viewer Left");
    for (int cycle = 0; cycle < 5; ++cycle) {
        auto* again = new frmVideoPlaylistView();
        again->show();
        ASSERT_TRUE(RealMpv::waitFor([&] { return IsFramed(again); }));
        again->unload();
        EXPECT_EQ(savedPlace("Video Playlist Viewer Top", "Video Playlist Viewer Left"), place)
            << "cycle " << cycle;
    }

    // Full screen, the window has no caption: none on the desktop either.
    setting("Playlist Full Screen", QStringLiteral("True"));
    auto* full = new frmVideoPlaylistView();
    full->show();
    ASSERT_TRUE(RealMpv::waitFor([&] { return IsFramed(full); }));
    QString name;
    EXPECT_TRUE(RealMpv::waitFor(
        [&] {
            QProcess p;
            p.start(QStringLiteral("xprop"),
                    {"-id", QString::number(full->winId()), "_NET_WM_NAME", "WM_NAME"});
            p.waitForFinished();
            name = QString::fromLocal8Bit(p.readAllStandardOutput()).simplified();
            // xprop shows an empty value as nothing at all.
            return name == QStringLiteral("_NET_WM_NAME(UTF8_STRING) = WM_NAME(STRING) =");
        },
        5000))
        << qPrintable(name);
    full->unload();
}

TEST_F(VideoOutputTest, TheVivoPlayerCentresItsPictureAndKeepsItOnTopFullScreenAndAfterRestart) {
    const QString film = tempDir() + QStringLiteral("/Red.viv");
    ASSERT_TRUE(
        QFile::rename(solidFilm(QStringLiteral("Red.avi"), QStringLiteral("red"), 30), film));
    main->show();
    openByDialog(film);
    frmVivoPlayer* w = Forms::find<frmVivoPlayer>();
    ASSERT_NE(w, nullptr);
    ASSERT_TRUE(shows(w->VvWeb1View, kRed));
    // Centred by its frame, as the user sees it.
    const QSize screen = ScreenSize(w);
    ASSERT_TRUE(RealMpv::waitFor([&] {
        const QRect outer = OuterGeometry(w);
        return std::abs(outer.top() - (screen.height() - outer.height()) / 2) <= 1 &&
               std::abs(outer.left() - (screen.width() - outer.width()) / 2) <= 1;
    })) << qPrintable(QDebug::toString(OuterGeometry(w)));
    EXPECT_EQ(w->size(), QSize(320, 240));

    w->OntopMenu->trigger();
    ASSERT_TRUE(
        RealMpv::waitFor([&] { return bool(w->windowFlags() & Qt::WindowStaysOnTopHint); }));
    EXPECT_TRUE(shows(w->VvWeb1View, kRed));
    w->OntopMenu->trigger();
    EXPECT_TRUE(shows(w->VvWeb1View, kRed));

    // Full screen: the picture fills the maximised window, far beyond the film's own size.
    w->FullScreenMenu->trigger();
    ASSERT_TRUE(
        RealMpv::waitFor([&] { return maximised(w) && w->VvWeb1View->size() == w->size(); }));
    EXPECT_TRUE(shows(w->VvWeb1View, kRed, QPoint(w->width() / 8, w->height() / 2)));
    w->FullScreenMenu->trigger();
    ASSERT_TRUE(
        RealMpv::waitFor([&] { return !w->isMaximized() && w->size() == QSize(320, 240); }));
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Right-Click for Options..."));
    EXPECT_TRUE(shows(w->VvWeb1View, kRed));

    w->RestartMenu->trigger();
    EXPECT_TRUE(shows(w->VvWeb1View, kRed));
    w->ExitMenu->trigger();

    // A film larger than the screen keeps its title bar on the screen.
    const QString large = tempDir() + QStringLiteral("/Large.viv");
    ASSERT_TRUE(QFile::rename(
        solidFilm(QStringLiteral("Large.avi"), QStringLiteral("red"), 5, screen + QSize(160, 120)),
        large));
    openByDialog(large);
    w = Forms::find<frmVivoPlayer>();
    ASSERT_NE(w, nullptr);
    ASSERT_TRUE(RealMpv::waitFor([&] {
        return IsFramed(w) && OuterGeometry(w).topLeft() == QPoint();
    })) << qPrintable(QDebug::toString(OuterGeometry(w)));
    EXPECT_EQ(w->size(), screen + QSize(160, 120));
    w->ExitMenu->trigger();
}

TEST_F(VideoOutputTest, ATwoFilmVideoCdPlaysToItsEndTwentyTimesInARow) {
    const QString cue = tempDir() + QStringLiteral("/disc.cue");
    // Short films, played in real time as a user sees them.
    ASSERT_TRUE(writeVideoCdImage(cue, 2, 0.6));
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
    for (int run = 0; run < 20; ++run) {
        entries.clear();
        c.setCommand(QStringLiteral("prev"));
        c.button(MMControl::Play)->click();
        ASSERT_TRUE(RealMpv::waitFor([&] { return c.Mode() == VideoCdDevice::Stopped; }))
            << "run " << run << ", mode " << c.Mode() << ", entries played " << entries.size();
        ASSERT_EQ(entries, (QList<int>{1, 2})) << "run " << run;
    }
    auto* display = static_cast<CdioVideoCdDevice&>(disc).Display();
    ASSERT_NE(display, nullptr);
    w->close();
}

}  // namespace
