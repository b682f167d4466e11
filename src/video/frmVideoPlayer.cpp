// The video player's life: load, the two timers, sizing to the film, unload.
#include "video/frmVideoPlayer.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/AppState.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "platform/Components.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "video/WindowMetrics.h"

namespace cantovel {

namespace {

const QString kTop = QStringLiteral("Video Player Top");
const QString kLeft = QStringLiteral("Video Player Left");

// The zoom entries stand in the video pop-up and do nothing.
void addZoomEntries(QMenu* popZoom) {
    if (!popZoom || !popZoom->actions().isEmpty()) return;
    const std::pair<const char*, const char*> entries[] = {
        {"popZoomActualSize", "Original Size"},
        {"popZoomFullNormal", "Full Screen (Normal - Advanced Options)"},
        {"popZoomFullStretch", "Full Screen (Stretch)"},
        {"popZoomHalfScreen", "Half Screen"},
        {"popZoomQuarterScreen", "Quarter Screen"},
        {"popZoomDoubleSize", "Double Original Size"},
    };
    for (const auto& [name, caption] : entries)
        popZoom->addAction(QString::fromLatin1(caption))->setObjectName(QLatin1String(name));
}

// Switches a timer of the main window. Switching a running timer on again would start its
// count afresh, and this is done every 100 ms: the main display would never tick.
void switchTimer(Timer& timer, bool on) {
    if (timer.isEnabled() != on) timer.setEnabled(on);
}

}  // namespace

frmVideoPlayer::frmVideoPlayer() : Form(QStringLiteral("frmVideoPlayer")) {
    setWindowTitle(QString::fromLatin1(Caption));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    // The window keeps its own smallest size; the menu bar sets none.
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    MenuBar = new QMenuBar(this);
    layout->setMenuBar(MenuBar);
    Inside = new QWidget(this);
    Inside->setObjectName(QStringLiteral("Inside"));
    Inside->setAutoFillBackground(true);
    Inside->setMinimumSize(0, 0);
    // The window's keys need a widget to come back to when the menu bar was used from
    // the keyboard: with none, the menu bar kept the focus and took every Escape.
    Inside->setFocusPolicy(Qt::StrongFocus);
    QPalette black = Inside->palette();
    black.setColor(QPalette::Window, Qt::black);
    Inside->setPalette(black);
    layout->addWidget(Inside, 1);
    MPView = new QWidget(Inside);
    MPView->setObjectName(QStringLiteral("MP"));
    MPView->setAutoFillBackground(true);
    MPView->setPalette(black);
    MPView->installEventFilter(this);
    buildMenu();
    resize(320, 240);

    mp_ = Components::create<MediaPlayer>();
    if (mp_) {
        mp_->setVideoWidget(MPView);
        connect(mp_.get(), &MediaPlayer::PlayStateChange, this,
                &frmVideoPlayer::MP_PlayStateChange);
    }
    connect(&Timer1, &Timer::timeout, this, &frmVideoPlayer::Timer1_Timer);
    connect(&Timer2, &Timer::timeout, this, &frmVideoPlayer::Timer2_Timer);
    Form_Load();
    Timer1.setEnabled(true);
    Timer2.setEnabled(true);
}

frmVideoPlayer::~frmVideoPlayer() = default;

void frmVideoPlayer::Form_Load() {
    // 1.
    MPView->hide();
    mnuExit->setText(QStringLiteral("E&xit\tAlt+F4"));
    MPView->move(0, 0);
    addZoomEntries(frmTemp::get().popZoom);

    // 2. 100 gives 0, 0 gives -10000.
    const frmMain* main = frmMain::instance();
    if (mp_) mp_->setVolume((int(main ? main->PlayerVolume : 0) - 100) * 100);

    // 3.
    MRU = std::make_unique<CMRU>();
    MRU->RootKey = RegRoot::LocalMachine;
    MRU->RegistryPath = MruKey();
    MRU->SubKey = QStringLiteral("MRU Entries");
    MRU->TagPrefix = QStringLiteral("MRUTag");
    for (int i = 0; i < int(mnuFileMRU.size()); ++i) MRU->setMenuItem(i, mnuFileMRU[i]);
    MRU->GetMRUList();

    // 4. Saved in twips; the default is where the window is.
    const double tpp = TwipsPerPixel(this);
    const double top = Val(ReadAppSetting(kTop, QString::number(y() * tpp)));
    const double left = Val(ReadAppSetting(kLeft, QString::number(x() * tpp)));
    MoveOuter(this, QPoint(int(std::lround(left / tpp)), int(std::lround(top / tpp))));
}

void frmVideoPlayer::SetVideoFile(const QString& path) {
    VideoFile = path;
}

void frmVideoPlayer::Timer2_Timer() {
    if (!mp_ || mp_->PlayState() != MediaPlayer::mpPlaying) return;
    if (frmMain* main = frmMain::instance()) {
        main->MoveThumb(16);
        main->OpenComplete(long(CInt(mp_->Duration())));
        switchTimer(main->Timer3, true);
    }
    // The inside takes the picture's natural size.
    resize(MPView->size() + (size() - Inside->size()));
    MPView->show();
    mp_->setDisplaySize(MediaPlayer::mpFitToSize);
    Timer2.setEnabled(false);
}

void frmVideoPlayer::Form_Resize() {
    if (MPView->isHidden()) return;
    if (KeepOuterMinimum(this, MinimumTwips)) return;
    MPView->setGeometry(0, 0, Inside->width(), Inside->height());
}

void frmVideoPlayer::Timer1_Timer() {
    frmMain* main = frmMain::instance();
    if (!main || main->PlaylistRunning) return;
    switchTimer(main->Timer3, mp_ && mp_->PlayState() == MediaPlayer::mpPlaying);
}

void frmVideoPlayer::MP_PlayStateChange(int, int newState) {
    if (newState != MediaPlayer::mpPlaying) return;
    if (frmMain* main = frmMain::instance()) switchTimer(main->Timer3, true);
    Form_Resize();
}

bool frmVideoPlayer::unloadEvent() {
    // The window may outlive its unload until the waits on the stack return; its timers
    // would meanwhile switch the main window's display off for a player that has stopped.
    Timer1.setEnabled(false);
    Timer2.setEnabled(false);
    if (frmMain* main = frmMain::instance(); main && !main->StopRequested && !AppClosing)
        main->PlayStopped();
    const double tpp = TwipsPerPixel(this);
    const QPoint place = OuterGeometry(this).topLeft();
    SaveAppSetting(kTop, QString::number(float(place.y() * tpp)));
    SaveAppSetting(kLeft, QString::number(float(place.x() * tpp)));
    return false;
}

void frmVideoPlayer::resizeEvent(QResizeEvent* event) {
    Form::resizeEvent(event);
    Form_Resize();
}

void frmVideoPlayer::keyPressEvent(QKeyEvent* event) {
    const bool altF4 = event->key() == Qt::Key_F4 && event->modifiers() == Qt::AltModifier;
    if (event->key() == Qt::Key_Escape || altF4) {
        close();
        return;
    }
    Form::keyPressEvent(event);
}

bool frmVideoPlayer::eventFilter(QObject* watched, QEvent* event) {
    // The right button on the picture opens the video pop-up of the main menus.
    if (watched == MPView && event->type() == QEvent::MouseButtonPress) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton) {
            frmTemp::get().popVideo->popup(mouse->globalPosition().toPoint());
            return true;
        }
    }
    return Form::eventFilter(watched, event);
}

}  // namespace cantovel
