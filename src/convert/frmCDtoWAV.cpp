#include "convert/frmCDtoWAV.h"

#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QProgressBar>
#include <QVBoxLayout>
#include <limits>

#include "app/Settings.h"
#include "app/Utilities.h"
#include "cd/CDTrackListView.h"
#include "convert/frmConfigDlg.h"
#include "convert/frmCopyDlg.h"
#include "platform/Components.h"
#include "platform/clock/Clock.h"
#include "platform/dialogs/FileDialogs.h"

namespace cantovel {

namespace {

const QString kOutputDirectory = QStringLiteral("CD to WAV Output Directory");

}  // namespace

frmCDtoWAV::frmCDtoWAV()
    : CDWindow(QStringLiteral("frmCDtoWAV"), QStringLiteral("Cantovel - Convert CD Track to WAV")),
      ActiveMovie1(Components::create<MediaPlayer>()) {
    auto* menus = new QMenuBar(this);
    DAC1 = menus->addMenu(QStringLiteral("&File"));
    ConfigDrive =
        DAC1->addAction(QStringLiteral("&Configure..."), this, [this] { ConfigDrive_Click(); });
    SelectWaveformat1 = DAC1->addAction(QStringLiteral("&Select WAV Format..."), this,
                                        [this] { SelectWaveformat1_Click(); });
    DAC1->addSeparator();
    SelectAll1 =
        DAC1->addAction(QStringLiteral("Select &All"), this, [this] { ListView->SelectAll(); });
    InvertSelection1 = DAC1->addAction(QStringLiteral("&Invert Selection"), this,
                                       [this] { ListView->InvertSelection(); });
    DAC1->addSeparator();
    miExit = DAC1->addAction(QStringLiteral("E&xit"), this, [this] { unload(); });
    Actions1 = menus->addMenu(QStringLiteral("&Actions"));
    CopyTracks1 = Actions1->addAction(QStringLiteral("&Convert Audio Track(s) to WAV"), this,
                                      [this] { CopyTracks1_Click(); });
    PlayMenu =
        Actions1->addAction(QStringLiteral("&Play WAV File"), this, [this] { PlayMenu_Click(); });
    PauseMenu = Actions1->addAction(QStringLiteral("Pa&use"), this, [this] { PauseMenu_Click(); });
    PauseMenu->setEnabled(false);
    CDControls = menus->addMenu(QStringLiteral("CD-&ROM Controls"));
    PlayCDMenu = CDControls->addAction(kPlayTrack, this, [this] { PlayCDMenu_Click(); });
    PauseCDMenu = CDControls->addAction(kPauseCD, this, [this] { PauseCDMenu_Click(); });
    SeekNextMenu =
        CDControls->addAction(QStringLiteral("Seek &Next"), this, [this] { SeekNextMenu_Click(); });
    SeekPrevMenu = CDControls->addAction(QStringLiteral("Seek Pre&vious"), this,
                                         [this] { SeekPrevMenu_Click(); });
    EjectMenu =
        CDControls->addAction(QStringLiteral("&Eject"), this, [this] { EjectMenu_Click(); });
    MuteMenu = CDControls->addAction(QStringLiteral("&Mute"), this, [this] { MuteMenu_Click(); });
    layout()->setMenuBar(menus);

    addToolbarButton(QStringLiteral("Convert"),
                     QStringLiteral("Convert CD to WAV / Stop Conversion Toggle"),
                     QStyle::SP_DialogSaveButton);
    addToolbarButton(QStringLiteral("Play"), QStringLiteral("Play New WAV / Stop Play Toggle"),
                     QStyle::SP_MediaPlay);
    addToolbarButton(QStringLiteral("Pause"), QStringLiteral("Pause / Resume Toggle"),
                     QStyle::SP_MediaPause);
    addToolbarButton(QStringLiteral("Exit"), QStringLiteral("Exit Module"),
                     QStyle::SP_DialogCloseButton);

    Label1->setText(
        QStringLiteral("To convert CD to WAV, select the desired track(s) and choose "
                       "the appropriate option from the toolbar or Actions menu."));
    Progressbar1 = new QProgressBar(this);
    Progressbar1->setRange(0, 100);
    Progressbar1->setValue(0);
    Progressbar1->hide();
    layout()->addWidget(Progressbar1);
    finishLayout();
    resize(560, 420);

    connect(&Timer, &cantovel::Timer::timeout, this, [this] { Timer_Timer(); });
    connect(&Timer1, &cantovel::Timer::timeout, this, [this] { Timer1_Timer(); });
    connect(&Timer3, &cantovel::Timer::timeout, this, [this] { Timer3_Timer(); });
    if (ActiveMovie1)
        connect(ActiveMovie1.get(), &MediaPlayer::PlayStateChange, this,
                &frmCDtoWAV::ActiveMovie1_StateChange);
    if (CDReader) {
        connect(CDReader.get(), &CDReader::CopyError, this, &frmCDtoWAV::CDReader_CopyError);
        connect(CDReader.get(), &CDReader::CopyStarted, this, &frmCDtoWAV::CDReader_CopyStarted);
        connect(CDReader.get(), &CDReader::CopyFinished, this, &frmCDtoWAV::CDReader_CopyFinished);
        connect(CDReader.get(), &CDReader::CopyWriteFailed, this,
                &frmCDtoWAV::CDReader_CopyWriteFailed);
    }
    Form_Load();
}

frmCDtoWAV::~frmCDtoWAV() = default;

void frmCDtoWAV::Form_Load() {
    if (!listDrives()) return;
    DevCombo_Click();
    Timer.setEnabled(true);
}

void frmCDtoWAV::DevCombo_Click() {
    if (!openSelectedDrive().isEmpty()) {
        MsgBoxShow(QStringLiteral("The selected CD-ROM drive could not be opened. \r\n\r\n"
                                  "Ensure the inserted CD is of audio content and try again.  "
                                  "(Your disc may require cleaning.)\r\n"),
                   kExclamation);
        return;
    }
    FillTrackList();
}

void frmCDtoWAV::FillTrackList() {
    CDWindow::FillTrackList();
    CopyTracks1->setEnabled(ListView->topLevelItemCount() > 0 && ListView->anySelected());
}

void frmCDtoWAV::Timer_Timer() {
    if (!CDReader) return;
    const int state = CDReader->DriveState();
    showPlayState();
    if (state == 1 || state == 2) {
        EjectMenu->setEnabled(true);
    } else {
        // Only reading the directory ever enables the conversion again.
        CopyTracks1->setEnabled(false);
        EjectMenu->setEnabled(state != 0);
    }
    showDiscState(false);
}

void frmCDtoWAV::CopyTracks1_Click() {
    // The conversion always starts on a freshly opened drive.
    openSelectedDrive();
    if (!ListView->anySelected()) {
        MsgBoxShow(QStringLiteral("You must select the audio track(s) you wish to convert before "
                                  "proceeding."),
                   kInformation);
        return;
    }
    const QList<CDTrack> tracks = CDReader ? CDReader->Tracks() : QList<CDTrack>();
    for (int i = 0; i < ListView->topLevelItemCount(); ++i) {
        if (ListView->topLevelItem(i)->isSelected() && (i >= tracks.size() || !tracks[i].IsAudio)) {
            // One data track refuses the whole selection.
            MsgBoxShow(QStringLiteral("A selected track is not of audio content.  \r\n\r\n"
                                      "Ensure the correct CD is in your drive before proceeding."),
                       kExclamation);
            return;
        }
    }
    FileDialogRequest request;
    request.title = QStringLiteral(
        "Select the Folder and Enter the Filename for the Output WAV "
        "File...");
    request.fileName = QStringLiteral("track");
    request.filter = QStringLiteral("WAV Files|*.wav");
    request.defaultExt = QStringLiteral("wav");
    request.initDir = ReadAppSetting(kOutputDirectory, QDir::currentPath());
    const FileDialogResult chosen = FileDialogs::get().save(this, request);
    if (chosen.cancelled || chosen.file().isEmpty()) {
        if (CopyDlg) CopyDlg->unload();
        Timer.setEnabled(true);
        return;
    }
    SaveAppSetting(kOutputDirectory, ParsePathParts(chosen.file(), QStringLiteral("l")));
    // The status tick keeps away from the reader while it copies.
    Timer.setEnabled(false);
    auto* dialog = new frmCopyDlg(*this);
    CopyDlg = dialog;
    dialog->BaseName = chosen.file();
    showModal(dialog);
    if (CopyDlg) CopyDlg->unload();
    Timer.setEnabled(true);
}

void frmCDtoWAV::showModal(Form* dialog) {
    QPointer<Form> shown(dialog);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->show();
    const auto closed = [&shown] { return !shown || shown->isHidden(); };
    while (!closed()) Clock::get().wait(std::numeric_limits<int>::max(), closed);
}

void frmCDtoWAV::CDReader_CopyError() {
    if (CopyDlg) CopyDlg->CopyFailed = VTrue;
}

void frmCDtoWAV::CDReader_CopyStarted() {
    if (CopyDlg) CopyDlg->StartTimer();
}

void frmCDtoWAV::CDReader_CopyFinished() {
    if (CopyDlg) CopyDlg->TrackFinished();
}

void frmCDtoWAV::CDReader_CopyWriteFailed() {
    if (!CDReader || CDReader->CopyState() != 1) return;
    if (CopyDlg) {
        CopyDlg->Messages->addItem(QStringLiteral(
            "Unable to write file.  Your temporary disk may have insufficient space."));
        CopyDlg->CopyFailed = VTrue;
    }
    CDReader->StopCopy();
}

void frmCDtoWAV::ConfigDrive_Click() {
    auto* dialog = new frmConfigDlg(CDReader.get(), this);
    QPointer<frmConfigDlg> shown(dialog);
    showModal(dialog);
    if (shown) shown->unload();
}

void frmCDtoWAV::SelectWaveformat1_Click() {
    if (CDReader) CDReader->SelectWaveFormat(this);
}

void frmCDtoWAV::Toolbar1_ButtonClick(const QString& key) {
    if (key == QLatin1String("Convert")) {
        CopyTracks1_Click();
    } else if (key == QLatin1String("Play")) {
        PlayMenu_Click();
    } else if (key == QLatin1String("Pause")) {
        if (!PauseMenu->isEnabled())
            MsgBoxShow(QStringLiteral("Play is not currently in progress."), kInformation);
        else
            PauseMenu_Click();
    } else if (key == QLatin1String("Exit")) {
        unload();
    }
}

void frmCDtoWAV::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        unload();
    else
        CDWindow::keyPressEvent(event);
}

bool frmCDtoWAV::unloadEvent() {
    releaseReader();
    return false;
}

}  // namespace cantovel
