#include "video/frmVideoPlaylistView.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScreen>
#include <cmath>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/Components.h"
#include "player/frmMain.h"
#include "playlist/PlaylistSettings.h"
#include "shell/TwipsPerPixel.h"
#include "shell/WindowHelpers.h"
#include "video/WindowMetrics.h"

namespace cantovel {

frmVideoPlaylistView::frmVideoPlaylistView()
    : Form(QStringLiteral("frmVideoPlaylistView")),
      am_(Components::create<MediaPlayer>()),
      picture_(new QWidget(this)) {
    picture_->installEventFilter(this);

    MainMenu = new QMenu(this);
    popRestart = namedItem(MainMenu, "popRestart", QStringLiteral("Restart"));
    popStop = namedItem(MainMenu, "popStop", QStringLiteral("Stop"));
    popPause = namedItem(MainMenu, "popPause", QStringLiteral("Pause"));
    popSeekF = namedItem(MainMenu, "popSeekF", QStringLiteral("Seek Forward"));
    popSeekR = namedItem(MainMenu, "popSeekR", QStringLiteral("Seek Reverse"));
    popFullScreen = namedItem(MainMenu, "popFullScreen", QStringLiteral("Full Screen Mode"));
    popFullScreen->setCheckable(true);
    OntopMenu = namedItem(MainMenu, "OntopMenu", QStringLiteral("Always Ontop"));
    OntopMenu->setCheckable(true);

    menuBar = new QMenuBar(this);
    mnuFile = menuBar->addMenu(QStringLiteral("&File"));
    mnuPlay = namedItem(mnuFile, "mnuPlay", QStringLiteral("&Play"));
    mnuPause = namedItem(mnuFile, "mnuPause", QStringLiteral("Pa&use"));
    mnuSeekF = namedItem(mnuFile, "mnuSeekF", QStringLiteral("Seek &Forward"));
    mnuSeekR = namedItem(mnuFile, "mnuSeekR", QStringLiteral("Seek &Reverse"));
    mnuFullScreen = namedItem(mnuFile, "mnuFullScreen", QStringLiteral("Fu&ll Screen Mode"));
    mnuFullScreen->setCheckable(true);
    mnuExit = namedItem(mnuFile, "mnuExit", QStringLiteral("E&xit"));

    connect(popRestart, &QAction::triggered, this, &frmVideoPlaylistView::popRestart_Click);
    connect(popStop, &QAction::triggered, this, &frmVideoPlaylistView::popStop_Click);
    connect(popPause, &QAction::triggered, this, &frmVideoPlaylistView::popPause_Click);
    connect(popSeekF, &QAction::triggered, this, [this] { mnuSeek(10); });
    connect(popSeekR, &QAction::triggered, this, [this] { mnuSeek(-10); });
    // A checkable item's click flips its check before the handler reads it.
    connect(popFullScreen, &QAction::triggered, this, [this] { mnuFullScreen_Click(); });
    connect(OntopMenu, &QAction::triggered, this, [this] {
        OntopMenu->setChecked(!OntopMenu->isChecked());
        OntopMenu_Click();
    });
    connect(mnuFile, &QMenu::aboutToShow, this, &frmVideoPlaylistView::mnuFile_Click);
    connect(mnuPlay, &QAction::triggered, this, &frmVideoPlaylistView::mnuPlay_Click);
    connect(mnuPause, &QAction::triggered, this, &frmVideoPlaylistView::mnuPause_Click);
    connect(mnuSeekF, &QAction::triggered, this, [this] { mnuSeek(10); });
    connect(mnuSeekR, &QAction::triggered, this, [this] { mnuSeek(-10); });
    connect(mnuFullScreen, &QAction::triggered, this, [this] { mnuFullScreen_Click(); });
    connect(mnuExit, &QAction::triggered, this, [this] { unload(); });
    connect(&Timer1, &Timer::timeout, this, &frmVideoPlaylistView::Timer1_Timer);

    if (am_) {
        am_->setVideoWidget(picture_);
        connect(am_.get(), &MediaPlayer::OpenStateChange, this,
                &frmVideoPlaylistView::AM_OpenStateChange);
        connect(am_.get(), &MediaPlayer::PlayStateChange, this, [](int oldState, int newState) {
            if (frmMain* main = frmMain::instance()) main->AM_PlayStateChange(oldState, newState);
        });
    }
    Form_Load();
}

frmVideoPlaylistView::~frmVideoPlaylistView() {
    if (am_) am_->disconnect(this);
}

void frmVideoPlaylistView::Form_Load() {
    setWindowTitle(QStringLiteral("Cantovel Video Play"));
    resize(320, 260);
    // 1.
    frmMain* main = frmMain::instance();
    if (am_ && main) am_->setVolume((int(main->PlayerVolume) - 100) * 100);
    // 2.
    const double tpp = TwipsPerPixel(this);
    const double top = Val(ReadAppSetting(QStringLiteral("Video Playlist Viewer Top"),
                                          QString::number(qRound(y() * tpp))));
    const double left = Val(ReadAppSetting(QStringLiteral("Video Playlist Viewer Left"),
                                           QString::number(qRound(x() * tpp))));
    MoveOuter(this, QPoint(int(left / tpp), int(top / tpp)));
    // 3.
    if (PlaylistSettings::flag("Playlist Full Screen", false)) {
        setWindowTitle(QString());
        setWindowState(Qt::WindowMaximized);
    } else {
        const QString name = am_ ? ParsePathParts(am_->fileName(), QStringLiteral("f")) : QString();
        setWindowTitle(QStringLiteral("Cantovel Video Play:  ") + name);
        setWindowState(Qt::WindowNoState);
    }
    // 4-5.
    picture_->hide();
    mnuExit->setText(QStringLiteral("E&xit\tAlt+F4"));
    Timer1.setEnabled(true);
}

QRect frmVideoPlaylistView::innerArea() const {
    const int top = menuBar->sizeHint().height();
    return QRect(0, top, width(), std::max(0, height() - top));
}

void frmVideoPlaylistView::AM_OpenStateChange(int, int newState) {
    frmMain* main = frmMain::instance();
    if (main && am_) main->MediaOpened(*am_);
    if (!am_ || newState != MediaPlayer::mpoOpen) return;
    if (PlaylistSettings::flag("Playlist Full Screen", false)) {
        am_->setDisplaySize(MediaPlayer::mpFitToSize);
        Form_Resize();
        am_->setDisplaySize(MediaPlayer::mpFitToSize);
    } else {
        am_->setDisplaySize(MediaPlayer::mpDefaultSize);
        // The film's own size, until the window is resized.
        const int w = am_->ImageSourceWidth(), h = am_->ImageSourceHeight();
        if (w > 0 && h > 0) {
            resize(w, h + menuBar->sizeHint().height());
            picture_->setGeometry(QRect(innerArea().topLeft(), QSize(w, h)));
        }
        setWindowTitle(QStringLiteral("Cantovel Video Play:  ") +
                       ParsePathParts(am_->fileName(), QStringLiteral("f")));
    }
    picture_->show();
}

void frmVideoPlaylistView::Form_Resize() {
    // The smallest size is the outer frame's, as the user sees the window.
    if (KeepOuterMinimum(this, 2000)) return;
    picture_->setGeometry(innerArea());
}

void frmVideoPlaylistView::resizeEvent(QResizeEvent*) {
    menuBar->setGeometry(0, 0, width(), menuBar->sizeHint().height());
    Form_Resize();
}

void frmVideoPlaylistView::Timer1_Timer() {
    frmMain* main = frmMain::instance();
    if (!main || !main->PlaylistRunning || !am_) return;
    // Only a change is passed on: enabling a running timer would start its count afresh,
    // and at this pace it would never fire.
    const bool playing = am_->PlayState() == MediaPlayer::mpPlaying;
    if (main->Timer3.isEnabled() != playing) main->Timer3.setEnabled(playing);
}

void frmVideoPlaylistView::AM_MouseDown(int Button) {
    const int state = am_ ? am_->PlayState() : MediaPlayer::mpStopped;
    const bool playing = state == MediaPlayer::mpPlaying;
    const bool paused = state == MediaPlayer::mpPaused;
    popPause->setEnabled(playing || paused);
    if (paused) popPause->setText(QStringLiteral("Resume"));
    if (playing) popPause->setText(QStringLiteral("Pause"));
    popSeekF->setEnabled(playing);
    popSeekR->setEnabled(playing);
    popStop->setEnabled(playing);
    popFullScreen->setChecked(isMaximized());
    if (Button == 2) MainMenu->popup(QCursor::pos());
}

void frmVideoPlaylistView::mnuFile_Click() {
    const int state = am_ ? am_->PlayState() : MediaPlayer::mpStopped;
    const bool playing = state == MediaPlayer::mpPlaying;
    const bool paused = state == MediaPlayer::mpPaused;
    mnuPlay->setText(playing || paused ? QStringLiteral("&Stop") : QStringLiteral("&Play"));
    mnuPause->setEnabled(playing || paused);
    if (paused) mnuPause->setText(QStringLiteral("Res&ume"));
    if (playing) mnuPause->setText(QStringLiteral("Pa&use"));
    mnuSeekF->setEnabled(playing);
    mnuSeekR->setEnabled(playing);
    mnuFullScreen->setChecked(isMaximized());
}

void frmVideoPlaylistView::popRestart_Click() {
    if (!am_) return;
    frmMain* main = frmMain::instance();
    if (am_->fileName().isEmpty() && main) am_->setFileName(main->CurrentFile);
    am_->setCurrentPosition(0);
    am_->Play();
    popRestart->setEnabled(true);
    popPause->setEnabled(true);
}

void frmVideoPlaylistView::popStop_Click() {
    if (am_) am_->Stop();
    popStop->setEnabled(false);
    popPause->setEnabled(false);
}

void frmVideoPlaylistView::popPause_Click() {
    if (!am_) return;
    if (popPause->text() == QLatin1String("Pause")) {
        am_->Pause();
        popPause->setText(QStringLiteral("Resume"));
    } else {
        am_->Play();
        popPause->setText(QStringLiteral("Pause"));
    }
}

void frmVideoPlaylistView::OntopMenu_Click() {
    FormOnTop(this, !OntopMenu->isChecked());
    OntopMenu->setChecked(!OntopMenu->isChecked());
}

void frmVideoPlaylistView::mnuPlay_Click() {
    if (!am_) return;
    if (mnuPlay->text() == QLatin1String("&Play"))
        am_->Play();
    else
        am_->Stop();
}

void frmVideoPlaylistView::mnuPause_Click() {
    if (!am_) return;
    if (mnuPause->text() == QLatin1String("Pa&use"))
        am_->Pause();
    else
        am_->Play();
}

void frmVideoPlaylistView::mnuSeek(int seconds) {
    if (am_) am_->setCurrentPosition(double(CInt(am_->CurrentPosition()) + seconds));
}

void frmVideoPlaylistView::mnuFullScreen_Click() {
    // Read from the window itself: a triggered item has already flipped its check.
    if (!isMaximized()) {
        setWindowState(Qt::WindowMaximized);
        mnuFullScreen->setChecked(true);
    } else {
        setWindowState(Qt::WindowNoState);
        mnuFullScreen->setChecked(false);
    }
}

void frmVideoPlaylistView::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape || (e->key() == Qt::Key_F4 && e->modifiers() & Qt::AltModifier))
        unload();
    else
        Form::keyPressEvent(e);
}

bool frmVideoPlaylistView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picture_ && event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        AM_MouseDown(e->button() == Qt::RightButton ? 2 : e->button() == Qt::LeftButton ? 1 : 4);
        return true;
    }
    return Form::eventFilter(watched, event);
}

bool frmVideoPlaylistView::queryUnload(UnloadMode) {
    // Closing the window ends the queue.
    frmMain* main = frmMain::instance();
    if (main) main->PlaylistRunning = VFalse;
    if (am_) am_->Stop();
    if (main) main->PlayStopped();
    return false;
}

bool frmVideoPlaylistView::unloadEvent() {
    Timer1.setEnabled(false);
    const double tpp = TwipsPerPixel(this);
    const QPoint place = OuterGeometry(this).topLeft();
    SaveAppSetting(QStringLiteral("Video Playlist Viewer Top"),
                   QString::number(qRound(place.y() * tpp)));
    SaveAppSetting(QStringLiteral("Video Playlist Viewer Left"),
                   QString::number(qRound(place.x() * tpp)));
    return false;
}

}  // namespace cantovel
