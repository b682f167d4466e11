#include "convert/frmCDtoMP3.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPointer>
#include <QStorageInfo>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

#include "app/AppState.h"
#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "app/WriteFailure.h"
#include "convert/BitrateMenu.h"
#include "convert/ProgressShape.h"
#include "platform/Components.h"
#include "platform/clock/Clock.h"
#include "platform/dialogs/FileDialogs.h"
#include "platform/msgbox/MsgBox.h"
#include "skin/frmSettings.h"

namespace cantovel {

namespace {

constexpr int kInfo = Mb::Information | Mb::SetForeground;
// The bars' design width, in twips.
constexpr double kBarWidth = 3495;
// Below this many kilobytes free for temporary files a track may not fit.
constexpr double kTemporarySpaceKb = 30000;
// Seconds a preview plays while the mouse is held on a track.
constexpr qint16 kPreviewSeconds = 10;

const QString kBaseSetting = QStringLiteral("CD to MP3 Base Filename");
const QString kPathSetting = QStringLiteral("CD to MP3 Path");
const QString kDriveSetting = QStringLiteral("CD to MP3 Drive");
const QString kDownMixSetting = QStringLiteral("DownMix Conversion");

QString joinPath(const QString& folder, const QString& name) {
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

double diskFreeKilobytes(const QString& path) {
    return DiskFreeSpace(path, true);
}

}  // namespace

double (*frmCDtoMP3::FreeKilobytes)(const QString& path) = diskFreeKilobytes;

QString frmCDtoMP3::TemporaryFilesLocation() {
    return Forms::touch<frmSettings>().Label2->text();
}

frmCDtoMP3::frmCDtoMP3() : Form(QStringLiteral("frmCDtoMP3")) {
    setWindowTitle(QStringLiteral("Convert CD to MP3"));
    buildWindow();
    buildMenus();
    ACD1 = Components::create<TrackExtractor>();
    Mp3Enc1 = Components::create<Mp3Encoder>();
    CDReader = Components::create<cantovel::CDReader>();
    ActiveMovie1 = Components::create<MediaPlayer>();
    connectComponents();
    Form_Load();
}

frmCDtoMP3::~frmCDtoMP3() = default;

void frmCDtoMP3::buildWindow() {
    auto* layout = new QVBoxLayout(this);
    Toolbar1 = new QToolBar(this);
    layout->addWidget(Toolbar1);
    const struct {
        const char* key;
        const char* tip;
        QStyle::StandardPixmap icon;
    } buttons[] = {
        {"Convert", "Convert", QStyle::SP_DriveCDIcon},
        {"Play", "Play", QStyle::SP_MediaPlay},
        {"Pause", "Pause", QStyle::SP_MediaPause},
        {"Exit", "Exit", QStyle::SP_DialogCloseButton},
    };
    for (const auto& b : buttons) {
        QAction* a = Toolbar1->addAction(style()->standardIcon(b.icon), QLatin1String(b.tip));
        a->setObjectName(QLatin1String(b.key));
        const QString key = QLatin1String(b.key);
        connect(a, &QAction::triggered, this, [this, key] { Toolbar1_ButtonClick(key); });
    }

    auto* columns = new QHBoxLayout;
    layout->addLayout(columns, 1);
    auto* left = new QVBoxLayout;
    columns->addLayout(left, 1);
    Frame2 = new QGroupBox(QStringLiteral("Audio CD Drives"), this);
    auto* drives = new QVBoxLayout(Frame2);
    List2 = new QListWidget(Frame2);
    List2->setMaximumHeight(80);
    Text1 = new QLineEdit(Frame2);
    Text1->setReadOnly(true);
    drives->addWidget(List2);
    drives->addWidget(Text1);
    left->addWidget(Frame2);
    Frame1 = new QGroupBox(QStringLiteral("CD Tracks"), this);
    auto* tracks = new QVBoxLayout(Frame1);
    List1 = new QListWidget(Frame1);
    List1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    List1->viewport()->installEventFilter(this);
    tracks->addWidget(List1);
    left->addWidget(Frame1, 1);

    Frame3 =
        new QGroupBox(QStringLiteral("Output Location ...        MP3 File Base Name.. ."), this);
    auto* output = new QVBoxLayout(Frame3);
    Drive1 = new QComboBox(Frame3);
    QStringList roots;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady()) roots << volume.rootPath();
    roots.removeDuplicates();
    roots.sort();
    Drive1->addItems(roots);
    Dir1 = new QTreeView(Frame3);
    dirModel_ = new QFileSystemModel(this);
    dirModel_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    dirModel_->setRootPath(QStringLiteral("/"));
    Dir1->setModel(dirModel_);
    for (int c = 1; c < dirModel_->columnCount(); ++c) Dir1->hideColumn(c);
    Dir1->header()->hide();
    Text2 = new QLineEdit(Frame3);
    output->addWidget(Drive1);
    output->addWidget(Dir1, 1);
    output->addWidget(Text2);
    columns->addWidget(Frame3, 1);
    connect(Drive1, &QComboBox::activated, this, [this] { Drive1_Change(); });
    connect(Dir1, &QTreeView::clicked, this,
            [this](const QModelIndex& index) { dir1Path_ = dirModel_->filePath(index); });
    // Folders are read in the background: the chosen one shows once its parents are in.
    connect(dirModel_, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& parent) {
        if (dir1Path_.startsWith(dirModel_->filePath(parent)))
            QTimer::singleShot(0, Dir1, [this] { showDir1Path(); });
    });
    // Entries are sorted after they are read, which moves the chosen one again.
    connect(dirModel_, &QAbstractItemModel::layoutChanged, this,
            [this] { QTimer::singleShot(0, Dir1, [this] { showDir1Path(); }); });

    Frame5 = new QGroupBox(QStringLiteral("All Tracks"), this);
    (new QVBoxLayout(Frame5))->addWidget(Shape1 = new ProgressShape(kBarWidth, Frame5));
    Frame4 = new QGroupBox(QStringLiteral("Current Track"), this);
    (new QVBoxLayout(Frame4))->addWidget(Shape2 = new ProgressShape(kBarWidth, Frame4));
    auto* bars = new QHBoxLayout;
    bars->addWidget(Frame5);
    bars->addWidget(Frame4);
    layout->addLayout(bars);
    connect(List2, &QListWidget::itemClicked, this, [this] { List2_Click(); });
}

void frmCDtoMP3::buildMenus() {
    auto* bar = new QMenuBar(this);
    layout()->setMenuBar(bar);
    mnuFile = bar->addMenu(QStringLiteral("&File"));
    mnuConvert = mnuFile->addAction(QStringLiteral("&Convert"));
    mnuPlay = mnuFile->addAction(QStringLiteral("&Play New MP3"));
    mnuPause = mnuFile->addAction(QStringLiteral("Pa&use"));
    mnuPause->setEnabled(false);
    mnuMute = mnuFile->addAction(QStringLiteral("&Mute"));
    mnuFile->addSeparator();
    mnuExit = mnuFile->addAction(QStringLiteral("E&xit\tAlt+F4"));
    mnuCDControls = bar->addMenu(QStringLiteral("C&D-ROM Controls"));
    mnuPlayTrack = mnuCDControls->addAction(QStringLiteral("&Play Track"));
    mnuPauseCD = mnuCDControls->addAction(QStringLiteral("Pa&use CD"));
    mnuSeekNext = mnuCDControls->addAction(QStringLiteral("Seek &Next"));
    mnuSeekPrev = mnuCDControls->addAction(QStringLiteral("Seek Pre&vious"));
    mnuEject = mnuCDControls->addAction(QStringLiteral("E&ject CD"));
    mnuSettings = bar->addMenu(QStringLiteral("&Settings"));
    Bitrates = new BitrateMenu(mnuSettings, QStringLiteral("Conversion Bitrate"));
    mnuDownMix = mnuSettings->addAction(QStringLiteral("DownMix"));
    mnuDownMix->setCheckable(true);

    connect(mnuFile, &QMenu::aboutToShow, this, [this] { mnuFile_Opening(); });
    connect(mnuConvert, &QAction::triggered, this, [this] { mnuConvert_Click(); });
    connect(mnuPlay, &QAction::triggered, this, [this] { mnuPlay_Click(); });
    connect(mnuPause, &QAction::triggered, this, [this] { mnuPause_Click(); });
    connect(mnuMute, &QAction::triggered, this, [this] { mnuMute_Click(); });
    connect(mnuExit, &QAction::triggered, this, [this] { close(); });
    connect(mnuPlayTrack, &QAction::triggered, this, [this] { mnuPlayTrack_Click(); });
    connect(mnuPauseCD, &QAction::triggered, this, [this] { mnuPauseCD_Click(); });
    connect(mnuSeekNext, &QAction::triggered, this, [this] { mnuSeekNext_Click(); });
    connect(mnuSeekPrev, &QAction::triggered, this, [this] { mnuSeekPrev_Click(); });
    connect(mnuEject, &QAction::triggered, this, [this] { mnuEject_Click(); });
}

void frmCDtoMP3::connectComponents() {
    if (ACD1) {
        connect(ACD1.get(), &TrackExtractor::ExtractBegin, this, [this] { ACD1_ExtractBegin(); });
        connect(ACD1.get(), &TrackExtractor::ExtractProgress, this,
                [this](qint32 v) { ACD1_ExtractProgress(v); });
        connect(ACD1.get(), &TrackExtractor::ExtractDone, this, [this] { ACD1_ExtractDone(); });
    }
    if (Mp3Enc1) {
        connect(Mp3Enc1.get(), &Mp3Encoder::EncodeProgress, this,
                [this](qint32 v) { Mp3Enc1_EncodeProgress(v); });
        connect(Mp3Enc1.get(), &Mp3Encoder::EncodeDone, this, [this] { Mp3Enc1_EncodeDone(); });
    }
    if (ActiveMovie1)
        connect(ActiveMovie1.get(), &MediaPlayer::PlayStateChange, this,
                [this](int o, int n) { ActiveMovie1_PlayStateChange(o, n); });
}

void frmCDtoMP3::setDir1Path(const QString& path) {
    dir1Path_ = path;
    showDir1Path();
}

void frmCDtoMP3::showDir1Path() {
    const QString path = dir1Path_;
    const QModelIndex index = dirModel_->index(path);
    if (!index.isValid()) return;
    for (QModelIndex parent = index.parent(); parent.isValid(); parent = parent.parent())
        Dir1->expand(parent);
    Dir1->setCurrentIndex(index);
    Dir1->scrollTo(index);
    dir1Path_ = path;
}

// The tree scrolls to the chosen folder only once it has its size on screen.
void frmCDtoMP3::showEvent(QShowEvent* event) {
    Form::showEvent(event);
    QTimer::singleShot(0, this, [this] { showDir1Path(); });
}

void frmCDtoMP3::Drive1_Change() {
    setDir1Path(Drive1->currentText());
}

void frmCDtoMP3::Form_Load() {
    // 1.
    Text2->setText(ReadAppSetting(kBaseSetting, QStringLiteral("Track")));
    setDir1Path(ReadAppSetting(kPathSetting, QDir::currentPath()));
    Drive1->setCurrentText(QStorageInfo(Dir1Path()).rootPath());
    mnuDownMix->setChecked(CBool(ReadAppSetting(kDownMixSetting, CStr(false))).value_or(false));
    const int driveIndex = int(Val(ReadAppSetting(kDriveSetting, QStringLiteral("0"))));
    // 2.
    if (!ACD1 || ACD1->Initialize() != 0) {
        MsgBoxShow(QStringLiteral("Can´t initialize ASPI ! Please use a newer version of ASPI. "
                                  "Program abort!"),
                   Mb::OKOnly, {}, this);
        unload();
        return;
    }
    // 3.
    Text1->setText(QStringLiteral("Please selct your audio CD drive above."));
    List2->clear();
    FullWidth = Shape1->Width();
    Shape1->setWidth(0);
    Shape2->setWidth(0);
    for (int i = 1; i <= ACD1->DriveCount(); ++i) List2->addItem(ACD1->DriveName(i));
    ACD1->SelectDrive(1);
    // 4.
    askForTemporarySpace();
    // 5.
    if (driveIndex >= 0 && driveIndex < List2->count()) {
        List2->setCurrentRow(driveIndex);
        List2_Click();
    }
}

void frmCDtoMP3::askForTemporarySpace() {
    const double free = FreeKilobytes(TemporaryFilesLocation());
    if (!(kTemporarySpaceKb > free)) return;
    const int answer = MsgBoxShow(
        QStringLiteral(
            "The \"Temporary Files Location\" you selected is running low on disk space.  For a "
            "typical audio track, 30MB or more of temporary disk space is often required, "
            "depending on the track's length.  Do you wish to proceed with the conversion "
            "process or change your temporary files location?  Click \"Yes\" to continue; "
            "click \"No\" to adjust your \"Temporary Files Location\" settings."),
        Mb::YesNo | kInfo, {}, this);
    if (answer != Mb::No) return;
    QPointer<frmSettings> settings(&Forms::touch<frmSettings>());
    settings->setWindowModality(Qt::ApplicationModal);
    settings->show();
    // Modal: this window waits until the settings are closed.
    const auto closed = [&] { return !settings || !settings->isVisible(); };
    while (!closed()) Clock::get().wait(200, closed);
}

void frmCDtoMP3::List2_Click() {
    if (!ACD1) return;
    const int drive = List2->currentRow() + 1;
    ACD1->SelectDrive(drive);
    Text1->setText(ACD1->DriveName(drive));
    List1->clear();
    for (int i = 1; i <= ACD1->TrackCount(); ++i) {
        TimeDigits digits;
        ConvertSeconds(ACD1->TrackLength(i) / 1000, true, false, &digits);
        List1->addItem(QStringLiteral("Track ") + Format(i, QStringLiteral("0#")) +
                       QStringLiteral("     Length: ") + digits.minutes + u':' + digits.seconds);
    }
}

void frmCDtoMP3::mnuConvert_Click() {
    if (mnuConvert->text() != QLatin1String("&Convert")) {
        // The stop: the loop below sees TrackDone first and goes on to the next selected
        // line, whose wait then sees the request.
        StopRequested = true;
        TrackDone = true;
        if (ACD1) ACD1->Abort();
        if (Encoding && Mp3Enc1) Mp3Enc1->Stop();
        Clock::get().doEvents();
        Shape1->setWidth(0);
        Shape2->setWidth(0);
        setWindowTitle(QStringLiteral("Convert CD to MP3 - Conversion Process Interrupted..."));
        mnuConvert->setText(QStringLiteral("&Convert"));
        return;
    }
    mnuConvert->setText(QStringLiteral("&Stop Conversion(s)"));
    if (List1->count() == 0) {
        MsgBoxShow(QStringLiteral("In order to proceed, you must first select the CD-ROM drive you "
                                  "wish to use when converting as well as the tracks to convert."),
                   kInfo, {}, this);
    } else if (List1->selectedItems().isEmpty()) {
        MsgBoxShow(QStringLiteral("You must first select the track(s) you wish to convert in "
                                  "order to continue."),
                   kInfo, {}, this);
    }
    TrackTotal = int(List1->selectedItems().size());
    TrackNumber = 0;
    RunFailed = false;
    QPointer<frmCDtoMP3> self(this);
    Converting = true;
    for (int i = 0; i < List1->count() && self; ++i) {
        if (!List1->item(i)->isSelected()) continue;
        // The track's number on the disc, unpadded, follows the base name.
        OutputName =
            joinPath(Dir1Path(), Text2->text() + QString::number(i + 1) + QStringLiteral(".wav"));
        ++TrackNumber;
        TrackDone = false;
        // One fixed name: the tracks run strictly one after the other.
        TempWav = joinPath(TemporaryFilesLocation(), QStringLiteral("track.wav"));
        extracting_ = i + 1;
        if (!ACD1 || ACD1->ExtractTrack(TempWav, i + 1) != 0)
            MsgBoxShow(QStringLiteral("An error occurred while attempting to load the selected "
                                      "track.  Please ensure a valid audio CD is inserted.  If "
                                      "problems persist, your disc may require cleaning."),
                       kInfo, {}, this);
        bool stopped = false;
        const auto waitOver = [&] { return !self || TrackDone || StopRequested; };
        while (self && !TrackDone) {
            if (StopRequested) {
                StopRequested = false;
                stopped = true;
                break;
            }
            Clock::get().wait(100, waitOver);
        }
        if (stopped || RunFailed) break;
    }
    if (!self) return;
    Converting = false;
    endOfRun();
}

void frmCDtoMP3::endOfRun() {
    StopRequested = false;
    setWindowTitle(RunFailed
                       ? QStringLiteral("Convert CD to MP3 - Conversion Process Interrupted...")
                       : QStringLiteral("Convert CD to MP3 - Conversion(s) Complete"));
    mnuConvert->setText(QStringLiteral("&Convert"));
    Shape1->setWidth(0);
    Shape2->setWidth(0);
    QApplication::beep();
}

void frmCDtoMP3::ACD1_ExtractBegin() {
    setWindowTitle(QStringLiteral("Convert CD to MP3 - Initializing Conversion..."));
}

void frmCDtoMP3::ACD1_ExtractProgress(qint32 value) {
    Shape2->setWidth(FullWidth / 1000 * value);
}

void frmCDtoMP3::reportFailure(const QString& text) {
    RunFailed = true;
    TrackDone = true;
    Encoding = false;
    Shape2->setWidth(0);
    MsgBoxShow(text, Mb::Exclamation | Mb::SetForeground, {}, this);
}

void frmCDtoMP3::ACD1_ExtractDone() {
    if (StopRequested || !Mp3Enc1) return;
    if (ACD1->WriteFailed()) {
        reportFailure(writeFailureText(TempWav, ACD1->WriteErrorDescription()));
        return;
    }
    if (ACD1->ReadFailed()) {
        // What was read is no whole track: it is not encoded.
        QFile::remove(TempWav);
        reportFailure(QStringLiteral("Track ") + Format(extracting_, QStringLiteral("0#")) +
                      QStringLiteral(" could not be read from the CD.  Please ensure a valid "
                                     "audio CD is inserted.  If problems persist, your disc may "
                                     "require cleaning."));
        return;
    }
    const QFileInfo name(OutputName);
    OutputMp3 = joinPath(name.path(), name.completeBaseName() + QStringLiteral(".mp3"));
    if (QFileInfo::exists(OutputMp3)) {
        const int answer = MsgBoxShow(
            QStringLiteral("The output MP3 filename for the current track already exists.  "
                           "Would you like to overwrite the existing file?"),
            Mb::YesNo | Mb::Question | Mb::SetForeground, {}, this);
        // Yes: the encoder puts the new file in the old one's place once it is complete.
        if (answer != Mb::Yes) {
            FileDialogRequest request;
            request.defaultExt = QStringLiteral("mp3");
            request.title = QStringLiteral("Enter Output Filename for Current CD Track...");
            request.filter = QStringLiteral("MPEG Layer 3|*.mp3");
            request.initDir = name.path();
            const FileDialogResult chosen = FileDialogs::get().save(this, request);
            // Without a new name the old one stands, for the encoder to overwrite.
            if (!chosen.cancelled && !chosen.file().isEmpty()) OutputMp3 = chosen.file();
        }
    }
    Mp3Enc1->setBitrate(Bitrates->storedBitrate());
    Mp3Enc1->setDownMix(mnuDownMix->isChecked());
    Mp3Enc1->SetFiles(TempWav, OutputMp3);
    Mp3Enc1->Start();
}

void frmCDtoMP3::Mp3Enc1_EncodeProgress(qint32 value) {
    const qint32 total = Mp3Enc1->FrameTotal();
    if (total > 0) Shape2->setWidth(kBarWidth / total * value);
    if (TrackTotal > 0)
        Shape1->setWidth(FullWidth / TrackTotal * (TrackNumber - 1) + Shape2->Width() / TrackTotal);
    setWindowTitle(QStringLiteral("Convert CD to MP3 - Conversion in Progress..."));
    Encoding = true;
}

void frmCDtoMP3::Mp3Enc1_EncodeDone() {
    if (QFileInfo::exists(TempWav)) QFile::remove(TempWav);
    if (Mp3Enc1->WriteFailed()) {
        reportFailure(writeFailureText(OutputMp3, Mp3Enc1->WriteErrorDescription()));
        return;
    }
    TrackDone = true;
    Encoding = false;
    Shape2->setWidth(0);
}

void frmCDtoMP3::mnuFile_Opening() {
    const bool ready = List1->count() > 0 && !List1->selectedItems().isEmpty();
    mnuConvert->setEnabled(ready || Converting);
    mnuPlayTrack->setEnabled(ready);
}

void frmCDtoMP3::List1_MouseDown() {
    if (ACD1 && List1->currentRow() >= 0)
        ACD1->Preview(qint16(List1->currentRow() + 1), 0, kPreviewSeconds);
}

void frmCDtoMP3::List1_MouseUp() {
    if (ACD1) ACD1->EndPreview();
}

void frmCDtoMP3::Toolbar1_ButtonClick(const QString& key) {
    if (key == QLatin1String("Convert")) {
        mnuConvert_Click();
    } else if (key == QLatin1String("Play")) {
        mnuPlay_Click();
    } else if (key == QLatin1String("Pause")) {
        if (!mnuPause->isEnabled()) {
            MsgBoxShow(QStringLiteral("Play is not currently in progress."), kInfo, {}, this);
            return;
        }
        mnuPause_Click();
    } else if (key == QLatin1String("Exit")) {
        close();
    }
}

bool frmCDtoMP3::queryUnload(UnloadMode) {
    // The conversion loop runs inside this window: it stays until the run is over, or
    // until the program ends, which stops the run first.
    if (!Converting) return false;
    if (!AppClosing) return true;
    if (mnuConvert->text() != QLatin1String("&Convert")) mnuConvert_Click();
    return false;
}

bool frmCDtoMP3::unloadEvent() {
    if (ACD1) {
        ACD1->Abort();
        ACD1->EndPreview();
    }
    if (Mp3Enc1) Mp3Enc1->Stop();
    SaveAppSetting(kBaseSetting, Text2->text());
    SaveAppSetting(kPathSetting, Dir1Path());
    SaveAppSetting(kDriveSetting, QString::number(std::max(0, List2->currentRow())));
    SaveAppSetting(kDownMixSetting, CStr(mnuDownMix->isChecked()));
    return false;
}

bool frmCDtoMP3::eventFilter(QObject* watched, QEvent* event) {
    if (watched == List1->viewport()) {
        if (event->type() == QEvent::MouseButtonPress) {
            // The line under the pointer becomes current before the preview starts.
            const auto* press = static_cast<QMouseEvent*>(event);
            if (QListWidgetItem* item = List1->itemAt(press->position().toPoint()))
                List1->setCurrentItem(item, QItemSelectionModel::NoUpdate);
            List1_MouseDown();
        } else if (event->type() == QEvent::MouseButtonRelease) {
            List1_MouseUp();
        }
    }
    return Form::eventFilter(watched, event);
}

}  // namespace cantovel
