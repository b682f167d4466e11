// The Vivo film window on the fake film control and virtual time.
#include <QApplication>
#include <QKeyEvent>

#include "VideoTest.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class VivoPlayerTest : public VideoTest {
  protected:
    // A Vivo film the fake control plays: `size` pixels, `ms` long.
    QString vivo(const QString& name, QSize size = QSize(320, 240), qint64 ms = 5000) {
        const QString path = file(name);
        FakeFilmPlayer::films()[path] = {size, ms};
        return path;
    }
    frmVivoPlayer* window() { return Forms::find<frmVivoPlayer>(); }
    FakeFilmPlayer& control() { return *static_cast<FakeFilmPlayer*>(window()->VvWeb1()); }
    // Where a window fitted to a film of `size` stands, by its frame.
    static QRect centred(frmVivoPlayer& w, QSize size) {
        const QSize outer = size + ChromeSize(&w, &w), screen = ScreenSize(&w);
        return QRect(
            QPoint((screen.width() - outer.width()) / 2, (screen.height() - outer.height()) / 2),
            outer);
    }
    void escape() {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(window(), &key);
    }
};

TEST_F(VivoPlayerTest, AFilmOpensCentredAndFittedInPlaceOfTheMainWindowAndItsEndStopsTheTimers) {
    main->show();
    openByDialog(vivo(QStringLiteral("Movie.viv"), QSize(320, 240), 5000));
    frmVivoPlayer* w = window();
    ASSERT_NE(w, nullptr);
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(w->windowTitle(), QStringLiteral("Right-Click for Options..."));
    EXPECT_EQ(control().states, (QStringList{"play_download", "play_out"}));
    EXPECT_EQ(w->frameGeometry(), centred(*w, QSize(320, 240)));
    EXPECT_EQ(w->VvWeb1View->geometry(), QRect(0, 0, 320, 240));

    main->OpenComplete(5);
    main->Timer1.setEnabled(true);
    main->Timer2.setEnabled(true);
    clock().advance(4000);
    clock().advance(1100);
    EXPECT_EQ(control().states.last(), QStringLiteral("play_out_complete"));
    EXPECT_FALSE(main->Timer2.isEnabled());
    EXPECT_EQ(caption(temp->mnuPlay), QStringLiteral("&Open..."));
    ASSERT_NE(window(), nullptr);

    // Escape closes it and brings the main window back.
    QPointer<FakeFilmPlayer> film = &control();
    escape();
    EXPECT_EQ(window(), nullptr);
    EXPECT_TRUE(main->isVisible());
    ASSERT_TRUE(film);
    EXPECT_EQ(film->calls.mid(film->calls.size() - 2), (QStringList{"Stop", "Film="}));
}

TEST_F(VivoPlayerTest, TheRightButtonMenuAndItsCommands) {
    const QString path = vivo(QStringLiteral("Movie.viv"));
    openByDialog(path);
    frmVivoPlayer& w = *window();
    emit control().MouseDown(1, 0, 10, 10);
    emit control().MouseDown(2, 0, 10, 10);
    EXPECT_TRUE(w.MainMenu->isVisible());
    QStringList captions;
    for (QAction* a : w.MainMenu->actions())
        if (!a->isSeparator()) captions << a->text();
    EXPECT_EQ(captions, (QStringList{"Restart", "Stop", "Pause", "Full Screen Mode", "Always Ontop",
                                     "About Movie", "Save As...", "Close"}));
    w.MainMenu->hide();

    // The caption survives a trip to full screen and back.
    QStringList titles;
    QObject::connect(&w, &QWidget::windowTitleChanged, &w, [&](const QString& t) { titles << t; });
    w.FullScreenMenu->trigger();
    EXPECT_TRUE(w.windowState() & Qt::WindowMaximized);
    w.FullScreenMenu->trigger();
    EXPECT_FALSE(w.windowState() & Qt::WindowMaximized);
    EXPECT_EQ(titles, (QStringList{QString(), "Right-Click for Options..."}));
    EXPECT_EQ(w.frameGeometry(), centred(w, QSize(320, 240)));

    // Pause is a stop that keeps the film; Restart reloads the current file.
    control().calls.clear();
    w.PauseMenu->trigger();
    EXPECT_EQ(w.PauseMenu->text(), QStringLiteral("Resume"));
    w.PauseMenu->trigger();
    EXPECT_EQ(w.PauseMenu->text(), QStringLiteral("Pause"));
    w.StopMenu->trigger();
    EXPECT_FALSE(w.StopMenu->isEnabled());
    w.RestartMenu->trigger();
    EXPECT_TRUE(w.StopMenu->isEnabled());
    w.AboutMovieMenu->trigger();
    w.SaveMenu->trigger();
    EXPECT_EQ(control().calls, (QStringList{"Stop", "Play", "Stop", "Film=", "Film=" + path, "Play",
                                            "About", "Save"}));
    w.ExitMenu->trigger();
    EXPECT_EQ(window(), nullptr);
}

}  // namespace
