#include "cd/frmCDPlayer.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QSlider>
#include <QVBoxLayout>

#include "app/AppState.h"
#include "app/Forms.h"
#include "cd/CDTrackListView.h"
#include "platform/mixer/Mixer.h"
#include "player/HelpFile.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "player/frmTempCD.h"

namespace cantovel {

frmCDPlayer::frmCDPlayer()
    : CDWindow(QStringLiteral("frmCDPlayer"), QStringLiteral("Cantovel - Audio CD Control Panel")) {
    auto* menus = new QMenuBar(this);
    DAC1 = menus->addMenu(QStringLiteral("&File"));
    auto add = [this](const QString& text, const QKeySequence& key, auto handler) {
        QAction* a = DAC1->addAction(text, this, handler);
        a->setShortcut(key);
        return a;
    };
    PlayCDMenu = add(kPlayTrack, Qt::Key_F2, [this] { PlayCDMenu_Click(); });
    PauseCDMenu = add(kPauseCD, Qt::Key_F3, [this] { PauseCDMenu_Click(); });
    SeekNextMenu = add(QStringLiteral("Seek &Next"), Qt::Key_F7, [this] { SeekNextMenu_Click(); });
    SeekPrevMenu =
        add(QStringLiteral("Seek Pre&vious"), Qt::Key_F8, [this] { SeekPrevMenu_Click(); });
    MuteMenu = add(QStringLiteral("&Mute"), Qt::CTRL | Qt::Key_M, [this] { MuteMenu_Click(); });
    EjectMenu = add(QStringLiteral("&Eject"), Qt::CTRL | Qt::Key_E, [this] { EjectMenu_Click(); });
    DAC1->addSeparator();
    miExit = add(QStringLiteral("E&xit"), Qt::CTRL | Qt::Key_X, [this] { unload(); });
    layout()->setMenuBar(menus);

    addToolbarButton(QStringLiteral("Play"), QStringLiteral("Play CD Track"), QStyle::SP_MediaPlay);
    addToolbarButton(QStringLiteral("Stop"), QStringLiteral("Stop CD Play"), QStyle::SP_MediaStop);
    addToolbarButton(QStringLiteral("Pause"), QStringLiteral("Pause CD Play"),
                     QStyle::SP_MediaPause);
    addToolbarButton(QStringLiteral("Mute"), QStringLiteral("Mute / Un-Mute Toggle"),
                     QStyle::SP_MediaVolumeMuted);
    addToolbarButton(QStringLiteral("Exit"), QStringLiteral("Exit"), QStyle::SP_DialogCloseButton);

    Label1->setText(
        QStringLiteral("Select the track you wish to play and press F2 to begin play "
                       "of the selected track."));
    auto* volumeRow = new QHBoxLayout;
    Slider1 = new QSlider(Qt::Horizontal, this);
    Slider1->setRange(0, 100);
    Label2 = new QLabel(this);
    Label2->setMinimumWidth(30);
    volumeRow->addWidget(new QLabel(QStringLiteral("Volume:"), this));
    volumeRow->addWidget(Slider1, 1);
    volumeRow->addWidget(Label2);
    layout()->addLayout(volumeRow);
    finishLayout();

    connect(&Timer, &cantovel::Timer::timeout, this, [this] { Timer_Timer(); });
    Form_Load();
    // Both change events of the slider, a drag's and a jump's.
    connect(Slider1, &QSlider::valueChanged, this, [this] { Slider1_Change(); });
}

void frmCDPlayer::Form_Load() {
    // The master volume in percent; a machine without a mixer reads -1, which the slider
    // takes as its lowest value.
    Slider1->setValue(int(Mixer::get().GetMasterVolume()));
    Label2->setText(QString::number(Slider1->value()));
    if (!listDrives()) return;
    DevCombo_Click();
    Timer.setEnabled(true);
}

void frmCDPlayer::DevCombo_Click() {
    const QString error = openSelectedDrive();
    if (!error.isEmpty()) {
        MsgBoxShow(QStringLiteral("The selected CD-ROM drive could not be opened. \r\n") + error);
        ListView->clear();
        return;
    }
    FillTrackList();
}

void frmCDPlayer::Timer_Timer() {
    if (!CDReader) return;
    const int state = CDReader->DriveState();
    showPlayState();
    EjectMenu->setEnabled(state != 0);
    showDiscState(true);
}

void frmCDPlayer::PlayCDMenu_Click() {
    if (PlayCDMenu->text() != kPlayTrack) {
        if (CDReader) CDReader->StopAudio();
        // Until the next tick puts "&Play Track" back, a click stops again.
        PlayCDMenu->setText(QStringLiteral("Play &Track"));
        CDPlaying = VFalse;
        Timer3.setEnabled(false);
        Label1->setText(QStringLiteral("Audio CD play has been stopped."));
        return;
    }
    if (!ListView->anySelected()) {
        MsgBoxShow(QStringLiteral("You must select the audio track(s) you wish to convert before "
                                  "proceeding."),
                   kInformation);
        return;
    }
    if (!CDReader) return;
    // Every track of the disc counts, not only the chosen one.
    for (const CDTrack& track : CDReader->Tracks()) {
        if (!track.IsAudio) {
            MsgBoxShow(QStringLiteral("The selected track is not of audio content.  \r\n\r\n"
                                      "Ensure the correct CD is in your drive before proceeding."),
                       kExclamation);
            return;
        }
    }
    // The disc takes the sound over from whatever the main player was doing.
    if (frmTempCD* cd = Forms::find<frmTempCD>(); cd && cd->CDReader) cd->CDReader->StopAudio();
    if (MediaPlayer* mp = frmTemp::get().MP.get()) mp->Stop();
    if (frmMain* main = frmMain::instance()) main->PlayStopped();
    SeekTrack = ListView->selectedIndex();
    CDReader->PlayAudioTrack(int(SeekTrack));
    Label1->setText(QStringLiteral("Audio CD play in progress..."));
    CDPlaying = VTrue;
}

void frmCDPlayer::seekBy(int step) {
    if (!CDReader) return;
    const QList<CDTrack> tracks = CDReader->Tracks();
    const long count = long(tracks.size());
    // One-based from here on.
    SeekTrack = CDReader->CurrentTrack() + step;
    if (SeekTrack > count) SeekTrack = 1;
    if (SeekTrack < 1) SeekTrack = count;
    if (SeekTrack >= 1 && SeekTrack <= count)
        CDReader->PlayAudioRange(tracks[SeekTrack - 1].StartPosition, tracks[SeekTrack - 1].Length);
    PlayCDMenu->setText(kStopCDPlay);
}

void frmCDPlayer::SeekNextMenu_Click() {
    seekBy(1);
}

void frmCDPlayer::SeekPrevMenu_Click() {
    seekBy(-1);
}

void frmCDPlayer::Slider1_Change() {
    Label2->setText(QString::number(Slider1->value()));
    Mixer::get().SetMasterVolume(Slider1->value());
    MuteMenu->setText(QStringLiteral("&Mute"));
}

void frmCDPlayer::MuteMenu_Click() {
    if (MuteMenu->text() == QLatin1String("&Mute")) {
        MuteMenu->setText(QStringLiteral("&Un-Mute"));
        Mixer::get().SetMasterVolume(0);
    } else {
        MuteMenu->setText(QStringLiteral("&Mute"));
        Mixer::get().SetMasterVolume(Slider1->value());
    }
}

void frmCDPlayer::Toolbar1_ButtonClick(const QString& key) {
    if (key == QLatin1String("Play")) {
        PlayCDMenu_Click();
    } else if (key == QLatin1String("Stop")) {
        if (!CDPlaying && PlayCDMenu->text() == kPlayTrack)
            MsgBoxShow(QStringLiteral("CD play is not currently in progress from this module."),
                       kInformation);
        else
            PlayCDMenu_Click();
    } else if (key == QLatin1String("Pause")) {
        PauseCDMenu_Click();
    } else if (key == QLatin1String("Mute")) {
        MuteMenu_Click();
    } else if (key == QLatin1String("Exit")) {
        unload();
    }
}

void frmCDPlayer::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        unload();
    else if (event->key() == Qt::Key_F1)
        ShowHelpTopic(QStringLiteral("Audio CD Control Panel"));
    else
        CDWindow::keyPressEvent(event);
}

bool frmCDPlayer::unloadEvent() {
    if (AppClosing) return false;
    if (frmMain* main = frmMain::instance()) main->show();
    releaseReader();
    return false;
}

}  // namespace cantovel
