#include "convert/frmBatchConvert.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>

#include "app/Settings.h"
#include "platform/Components.h"
#include "platform/clock/Timer.h"
#include "platform/msgbox/MsgBox.h"
#include "shell/BrowseForFolder.h"
#include "shell/DesktopResources.h"

namespace cantovel {

namespace {

FileListForm::ListTexts listTexts() {
    FileListForm::ListTexts t;
    t.caption = QStringLiteral("WAV Batch Converter");
    t.label = QStringLiteral(
        "Select the files to convert (Edit / \"Add\" menu or toolbar), then simply select "
        "\"Start Conversion\" from the File menu or toolbar.");
    t.addTitle = QStringLiteral("Select File(s) to Encode:");
    t.addFilter = QStringLiteral("WAV Files (16-bit)|*.wav");
    t.addPathSetting = QStringLiteral("Batch Convert Add Path");
    t.extensions = {QStringLiteral(".wav")};
    t.patterns = {QStringLiteral("*.wav")};
    t.removeNoneText =
        QStringLiteral("No files are currently selected to remove from the convert list.  ");
    t.convertTip = QStringLiteral("Convert / Stop Convert Toggle");
    t.runCaption = QStringLiteral("&Start Conversion");
    t.helpTopic = QStringLiteral("WAV Batch Converter");
    return t;
}

constexpr int kInfo = Mb::Information | Mb::SetForeground;

}  // namespace

frmBatchConvert::frmBatchConvert() : FileListForm(QStringLiteral("frmBatchConvert"), listTexts()) {
    ConvertMenu = RunMenu;
    Gauge->setFormat(QStringLiteral("Converting..."));
    Gauge->setStyleSheet(QStringLiteral(
        "QProgressBar { background: silver; } QProgressBar::chunk { background: blue; }"));
    tmrGauge = std::make_unique<Timer>(100);
    connect(tmrGauge.get(), &Timer::timeout, this, [this] { Timer_Tick(); });
    ACM = Components::create<FormatChooser>();
    Chain = Components::create<WaveChain>();
    if (Chain) {
        connect(Chain.get(), &WaveChain::TriggerStarted, this, [this] { Trigger_Started(); });
        connect(Chain.get(), &WaveChain::TriggerDataEnd, this, [this] { Trigger_DataEnd(); });
        connect(Chain.get(), &WaveChain::TriggerStopped, this, [this] { Trigger_Stopped(); });
        connect(Chain.get(), &WaveChain::DstFileError, this, [this] { DstFile_Error(); });
    }
}

frmBatchConvert::~frmBatchConvert() = default;

void frmBatchConvert::RunMenu_Click() {
    if (List1->count() == 0) {
        MsgBoxShow(QStringLiteral("No files are currently listed in your conversion list.  "
                                  "Please add the file(s) you wish to convert before proceeding."),
                   kInfo, {}, this);
        return;
    }
    if (ConvertMenu->text() != QLatin1String("&Start Conversion")) {
        RunFailed = true;
        if (Chain) Chain->Stop();
        Gauge->setValue(0);
        ConvertMenu->setText(QStringLiteral("&Start Conversion"));
        Label1->setText(QStringLiteral("WAV batch conversion process has been stopped."));
        return;
    }
    const QString setting = QStringLiteral("WAV Convert Output Path");
    const QString folder = BrowseForFolder(this, QStringLiteral("Select Folder for WAV Output:"),
                                           ReadAppSetting(setting, DefaultOutputFolder()));
    if (folder.isEmpty()) return;
    SaveAppSetting(setting, folder);
    OutputFolder = folder.endsWith(u'/') ? folder : folder + u'/';
    RunFailed = false;
    FileIndex = 0;
    if (!ACM || !ACM->ChooseFormat(QStringLiteral("Select..."), ACM->Format(), this)) return;
    ConvertFile();
    ConvertMenu->setText(QStringLiteral("&Stop Conversion"));
}

void frmBatchConvert::ConvertFile() {
    List1->setCurrentRow(FileIndex);
    const QString source = List1->item(FileIndex) ? List1->item(FileIndex)->text() : QString();
    QString description;
    if (!Chain) {
        description = QStringLiteral("No conversion chain is available.");
    } else {
        Chain->setSrcFileName(source);
        // The output keeps the source's name: the chosen folder may be the source's own.
        const QString output = OutputFolder + QFileInfo(source).fileName();
        if (!Chain->PrepareOutput(output))
            description = QStringLiteral("The output folder can't be made.");
        Chain->setDstFileName(output);
        Chain->setTargetFormat(ACM->Format());
        if (description.isEmpty()) {
            Chain->Start();
            if (Chain->lastError() != 0) description = Chain->lastErrorDescription();
        }
    }
    if (!description.isEmpty())
        MsgBoxShow(QStringLiteral("An error occurred while attempting to convert the current "
                                  "file (") +
                       source + QStringLiteral(").  \r\n\r\nExtended Error Information:  ") +
                       description,
                   kInfo, {}, this);
}

void frmBatchConvert::Trigger_Started() {
    tmrGauge->setEnabled(true);
}

void frmBatchConvert::Trigger_DataEnd() {
    Chain->Stop();
}

void frmBatchConvert::Trigger_Stopped() {
    tmrGauge->setEnabled(false);
    ++FileIndex;
    if (FileIndex < List1->count() && !RunFailed) {
        ConvertFile();
        return;
    }
    Gauge->setValue(0);
    if (!RunFailed) {
        const QString done =
            QStringLiteral("Batch WAV conversion process has successfully completed.");
        Label1->setText(done);
        MsgBoxShow(done, kInfo, {}, this);
        List1->clear();
    }
}

void frmBatchConvert::Timer_Tick() {
    const qint64 length = Chain ? Chain->SrcLength() : 0;
    if (length > 0) Gauge->setValue(int(Chain->SrcPosition() * 100 / length));
}

void frmBatchConvert::DstFile_Error() {
    if (!(Chain->State() & WaveChain::StateWriteFailed)) return;
    RunFailed = true;
    Chain->Close();
    // Either answer leads on alike.
    MsgBoxShow(QStringLiteral("Can't write to file, disk full ?"), Mb::OKCancel,
               QStringLiteral("Error"), this);
}

bool frmBatchConvert::queryUnload(UnloadMode) {
    // No closing while a file converts, and no word of why.
    return Chain && (Chain->State() & WaveChain::StateRunning);
}

}  // namespace cantovel
