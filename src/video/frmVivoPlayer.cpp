// The Vivo film window: sizing to the film, full screen, the right-button menu, unload.
#include "video/frmVivoPlayer.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPointer>

#include "app/AppState.h"
#include "app/Runtime.h"
#include "platform/Components.h"
#include "player/frmMain.h"
#include "shell/WindowHelpers.h"
#include "video/WindowMetrics.h"

namespace cantovel {

frmVivoPlayer::frmVivoPlayer() : Form(QStringLiteral("frmVivoPlayer")) {
    setWindowTitle(QString::fromLatin1(Caption));
    setAutoFillBackground(true);
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    // The design size, kept by a film that never starts.
    resize(320, 240);
    VvWeb1View = new QWidget(this);
    VvWeb1View->setObjectName(QStringLiteral("VvWeb1"));
    VvWeb1View->setAutoFillBackground(true);
    VvWeb1View->setPalette(black);
    VvWeb1View->setGeometry(0, 0, 320, 240);
    buildMenu();

    film_ = Components::create<FilmPlayer>();
    if (film_) {
        film_->setVideoWidget(VvWeb1View);
        connect(film_.get(), &FilmPlayer::StateChange, this, &frmVivoPlayer::VvWeb1_StateChange);
        connect(film_.get(), &FilmPlayer::TimeEvent, this, &frmVivoPlayer::VvWeb1_TimeEvent);
        connect(film_.get(), &FilmPlayer::MouseDown, this, &frmVivoPlayer::VvWeb1_MouseDown);
    }
}

frmVivoPlayer::~frmVivoPlayer() = default;

void frmVivoPlayer::buildMenu() {
    MainMenu = new QMenu(this);
    MainMenu->setObjectName(QStringLiteral("MainMenu"));
    const auto item = [this](const char* name, const char* caption, void (frmVivoPlayer::*slot)()) {
        QAction* a = namedItem(MainMenu, name, QString::fromLatin1(caption));
        connect(a, &QAction::triggered, this, [this, a, slot] {
            // The handlers check and uncheck themselves, by the state before the click.
            if (a->isCheckable()) a->setChecked(!a->isChecked());
            (this->*slot)();
        });
        return a;
    };
    RestartMenu = item("RestartMenu", "Restart", &frmVivoPlayer::RestartMenu_Click);
    StopMenu = item("StopMenu", "Stop", &frmVivoPlayer::StopMenu_Click);
    PauseMenu = item("PauseMenu", "Pause", &frmVivoPlayer::PauseMenu_Click);
    MainMenu->addSeparator();
    FullScreenMenu =
        item("FullScreenMenu", "Full Screen Mode", &frmVivoPlayer::FullScreenMenu_Click);
    FullScreenMenu->setCheckable(true);
    OntopMenu = item("OntopMenu", "Always Ontop", &frmVivoPlayer::OntopMenu_Click);
    OntopMenu->setCheckable(true);
    MainMenu->addSeparator();
    AboutMovieMenu = item("AboutMovieMenu", "About Movie", &frmVivoPlayer::AboutMovieMenu_Click);
    SaveMenu = item("SaveMenu", "Save As...", &frmVivoPlayer::SaveMenu_Click);
    MainMenu->addSeparator();
    ExitMenu = item("ExitMenu", "Close", &frmVivoPlayer::ExitMenu_Click);
}

// ---- The control as the main window drives it ----

void frmVivoPlayer::VvWeb1Open(const QString& path) {
    if (film_) film_->setFilm(path);
}

void frmVivoPlayer::VvWeb1Play() {
    if (film_) film_->Play();
}

void frmVivoPlayer::VvWeb1Stop() {
    if (film_) film_->Stop();
}

// ---- The control's events ----

void frmVivoPlayer::VvWeb1_StateChange(const QString& state, const QString&) {
    if (state == QLatin1String(FilmPlayer::PlayDownload)) {
        if (!film_) return;
        FitWindowToMovie(film_->MovieWidth(), film_->MovieHeight());
        ShowTime(long(film_->Duration() / 1000));
    } else if (state == QLatin1String(FilmPlayer::PlayOutComplete)) {
        EndOfFilm();
    }
}

void frmVivoPlayer::VvWeb1_TimeEvent(qint64 milliseconds, const QString&) {
    ShowTime(long(milliseconds / 1000));
}

void frmVivoPlayer::ShowTime(long) {}

void frmVivoPlayer::VvWeb1_MouseDown(int button, int, int, int) {
    if (button == 2) MainMenu->popup(QCursor::pos());
}

void frmVivoPlayer::EndOfFilm() {
    frmMain* main = frmMain::instance();
    if (!main) return;
    main->PlayStopped();
    main->Timer2.setEnabled(false);
    main->Timer1.setEnabled(false);
}

// ---- Sizing ----

void frmVivoPlayer::FitWindowToMovie(int width, int height) {
    filmSize_ = QSize(width, height);
    fitToFilm();
    // Sized before the window manager framed the window, the frame counted as nothing:
    // once the frame is known the fit is made again with it.
    if (!IsFramed(this)) {
        QPointer<frmVivoPlayer> self(this);
        WhenFramed(this, [self] {
            if (self) self->fitToFilm();
        });
    }
}

void frmVivoPlayer::fitToFilm() {
    // The comparisons hold alike in twips and in pixels, so pixels it is.
    const QSize wanted = filmSize_ + ChromeSize(this, this);
    const QSize screen = ScreenSize(this);
    const bool normal = !(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
    if (normal) {
        if (wanted.width() > screen.width() || wanted.height() > screen.height()) {
            // Larger than the screen: from the top left corner, running past the edges.
            SetOuterGeometry(this, QRect(QPoint(0, 0), wanted));
        } else {
            const QPoint centred((screen.width() - wanted.width()) / 2,
                                 (screen.height() - wanted.height()) / 2);
            SetOuterGeometry(this, QRect(centred, wanted));
        }
    }
    placeControl();
}

void frmVivoPlayer::placeControl() {
    if (FullScreenMenu->isChecked()) {
        VvWeb1View->setGeometry(0, y(), width(), height());
        return;
    }
    const int left = width() > filmSize_.width() ? (width() - filmSize_.width()) / 2 : 0;
    VvWeb1View->setGeometry(QRect(QPoint(left, 0), filmSize_));
    VvWeb1View->resize(width(), height());
}

void frmVivoPlayer::resizeEvent(QResizeEvent* event) {
    Form::resizeEvent(event);
    // The window manager sizes a window in its own time (a maximise above all): the
    // control is placed again by the size the window has now.
    if (!filmSize_.isEmpty()) placeControl();
}

void frmVivoPlayer::AdjustFullScreen() {
    if (FullScreenMenu->isChecked()) {
        FullScreenMenu->setChecked(false);
        setWindowState(windowState() & ~(Qt::WindowMaximized | Qt::WindowMinimized));
        if (film_) FitWindowToMovie(film_->MovieWidth(), film_->MovieHeight());
    } else {
        FullScreenMenu->setChecked(true);
        setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized);
        placeControl();
    }
}

// ---- The menu ----

void frmVivoPlayer::FullScreenMenu_Click() {
    if (!FullScreenMenu->isChecked()) {
        setWindowTitle(QString());
        AdjustFullScreen();
        setWindowTitle(QString::fromLatin1(Caption));
    } else {
        AdjustFullScreen();
    }
}

void frmVivoPlayer::RestartMenu_Click() {
    if (!film_) return;
    const frmMain* main = frmMain::instance();
    film_->setFilm(main ? main->CurrentFile : QString());
    film_->Play();
    StopMenu->setEnabled(true);
    PauseMenu->setEnabled(false);
}

void frmVivoPlayer::StopMenu_Click() {
    dropFilm();
    StopMenu->setEnabled(false);
    PauseMenu->setEnabled(false);
}

void frmVivoPlayer::PauseMenu_Click() {
    if (!film_) return;
    // The control has no pause: a stop that keeps the film stands in.
    if (PauseMenu->text() == QLatin1String("Pause")) {
        film_->Stop();
        PauseMenu->setText(QStringLiteral("Resume"));
    } else if (PauseMenu->text() == QLatin1String("Resume")) {
        film_->Play();
        PauseMenu->setText(QStringLiteral("Pause"));
    }
}

void frmVivoPlayer::OntopMenu_Click() {
    const bool onTop = !OntopMenu->isChecked();
    FormOnTop(this, onTop);
    OntopMenu->setChecked(onTop);
}

void frmVivoPlayer::AboutMovieMenu_Click() {
    if (film_) film_->About(this);
}

void frmVivoPlayer::SaveMenu_Click() {
    if (film_) film_->Save(this);
}

void frmVivoPlayer::ExitMenu_Click() {
    dropFilm();
    close();
}

void frmVivoPlayer::dropFilm() {
    if (!film_) return;
    film_->Stop();
    film_->setFilm(QString());
}

// ---- Closing ----

bool frmVivoPlayer::unloadEvent() {
    if (AppClosing) return false;
    dropFilm();
    EndOfFilm();
    if (frmMain* main = frmMain::instance()) main->show();
    return false;
}

void frmVivoPlayer::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    Form::keyPressEvent(event);
}

}  // namespace cantovel
