#include "cd/CDWindow.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

#include "app/Settings.h"
#include "cd/CDTrackListView.h"
#include "platform/Components.h"

namespace cantovel {

const QString CDWindow::kPlayTrack = QStringLiteral("&Play Track");
const QString CDWindow::kStopCDPlay = QStringLiteral("&Stop CD Play");
const QString CDWindow::kPauseCD = QStringLiteral("Pa&use CD");

CDWindow::CDWindow(const QString& name, const QString& title)
    : Form(name), CDReader(Components::create<cantovel::CDReader>()) {
    setWindowTitle(title);
    layout_ = new QVBoxLayout(this);

    Toolbar1 = new QToolBar(this);
    Toolbar1->setIconSize(QSize(24, 24));
    layout_->addWidget(Toolbar1);

    auto* driveRow = new QHBoxLayout;
    DevCombo = new QComboBox(this);
    auto* driveCaption = new QLabel(QStringLiteral("CD-ROM &Drive:"), this);
    driveCaption->setBuddy(DevCombo);
    driveRow->addWidget(driveCaption);
    driveRow->addWidget(DevCombo, 1);
    layout_->addLayout(driveRow);
    connect(DevCombo, &QComboBox::activated, this, [this] { DevCombo_Click(); });

    ListView = new CDTrackListView(this);
    layout_->addWidget(ListView, 1);

    Label1 = new QLabel(this);
    Label1->setWordWrap(true);
    layout_->addWidget(Label1);

    StatusBar = new QStatusBar(this);
    StatusBar->setSizeGripEnabled(false);
    for (QLabel*& panel : Panels) {
        panel = new QLabel(this);
        StatusBar->addWidget(panel, 1);
    }
}

CDWindow::~CDWindow() = default;

void CDWindow::finishLayout() {
    layout_->addWidget(StatusBar);
}

QAction* CDWindow::addToolbarButton(const QString& key, const QString& tip,
                                    QStyle::StandardPixmap image) {
    QAction* a = Toolbar1->addAction(style()->standardIcon(image), key);
    a->setObjectName(key);
    a->setToolTip(tip);
    connect(a, &QAction::triggered, this, [this, key] { Toolbar1_ButtonClick(key); });
    return a;
}

QAction* CDWindow::ToolbarButton(const QString& key) const {
    return Toolbar1->findChild<QAction*>(key);
}

QString CDWindow::dacKey() {
    return AppKey() + QStringLiteral("\\DAC");
}

bool CDWindow::listDrives() {
    if (!CDReader) return false;
    CDReader->LoadRegistry(RegRoot::CurrentUser, dacKey());
    const QList<CDDevice> devices = CDReader->Devices();
    if (devices.isEmpty()) return false;
    for (const CDDevice& d : devices) DevCombo->addItem(CDTrackListView::DriveText(d));
    DevCombo->setCurrentIndex(CDReader->DeviceID());
    return true;
}

QString CDWindow::openSelectedDrive() {
    if (!CDReader) return QStringLiteral("No CD reader is available.");
    CDReader->Close();
    CDReader->setDeviceID(DevCombo->currentIndex());
    CDReader->Open();
    return CDReader->lastError() ? CDReader->lastErrorDescription() : QString();
}

void CDWindow::FillTrackList() {
    if (CDReader)
        ListView->Fill(*CDReader, TrackCountShown);
    else
        ListView->clear();
}

void CDWindow::showPlayState() {
    PauseCDMenu->setEnabled(CDPlaying);
    SeekNextMenu->setEnabled(CDPlaying);
    SeekPrevMenu->setEnabled(CDPlaying);
    PlayCDMenu->setText(CDPlaying ? kStopCDPlay : kPlayTrack);
}

void CDWindow::showDiscState(bool forgetCount) {
    if (CDReader && CDReader->DiscPresent()) {
        Panels[0]->setText(QStringLiteral("CD Inserted"));
        if (CDReader->TrackCount() != TrackCountShown) FillTrackList();
        Panels[1]->setText(QStringLiteral("Time: ") +
                           CDTrackListView::PositionText(CDReader->Position(), false));
        Panels[2]->setText(QStringLiteral("Track:") +
                           Format(CDReader->CurrentTrack(), QStringLiteral("00")));
    } else {
        Panels[0]->setText(QStringLiteral("CD Not Inserted"));
        if (TrackCountShown != -1) {
            if (forgetCount) TrackCountShown = -1;
            ListView->clear();
        }
        Panels[1]->clear();
        Panels[2]->clear();
    }
}

void CDWindow::PauseCDMenu_Click() {
    if (!CDPlaying) {
        MsgBoxShow(QStringLiteral("CD audio is not currently being played from this module."),
                   kInformation);
        return;
    }
    if (!CDReader) return;
    if (PauseCDMenu->text() == kPauseCD) {
        ResumePosition = CDReader->Position();
        CDReader->PauseAudio();
        Label1->setText(QStringLiteral("Audio CD play has been paused."));
        PauseCDMenu->setText(QStringLiteral("&Resume CD Play"));
    } else {
        // SeekTrack as it stands: where it is one-based this is the next track's length,
        // and past the last track there is none, so nothing plays.
        const QList<CDTrack> tracks = CDReader->Tracks();
        if (SeekTrack >= 0 && SeekTrack < tracks.size())
            CDReader->PlayAudioRange(ResumePosition, tracks[SeekTrack].Length);
        Label1->setText(QStringLiteral("Audio CD play in progress..."));
        PauseCDMenu->setText(kPauseCD);
    }
}

void CDWindow::EjectMenu_Click() {
    if (CDReader) CDReader->Door(CDReader->DriveState() == CDReader::dsDoorOpen);
}

void CDWindow::releaseReader() {
    Timer.setEnabled(false);
    if (!CDReader) return;
    CDReader->StopAudio();
    CDReader->Close();
    CDReader->SaveRegistry(RegRoot::CurrentUser, dacKey());
}

}  // namespace cantovel
