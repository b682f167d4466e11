#include "convert/frmEncode.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "convert/BitrateMenu.h"
#include "platform/Components.h"
#include "platform/msgbox/MsgBox.h"

namespace cantovel {

namespace {

FileListForm::ListTexts listTexts() {
    FileListForm::ListTexts t;
    t.caption = QStringLiteral("Cantovel - Convert WAV to MP3");
    t.label = QStringLiteral(
        "To begin, mark the files you want to encode by selecting \"Add File(s) to List\" from "
        "the toolbar or \"Add\" from the Edit menu.  Once the desired files are in your list, "
        "choose \"Encode\" from the toolbar or File menu to process the files.");
    t.addTitle = QStringLiteral("Select File(s) to Encode:");
    t.addFilter = QStringLiteral("WAV Files (16-bit)|*.wav");
    t.addPathSetting = QStringLiteral("Encode Add Dialog Path");
    t.extensions = {QStringLiteral(".wav")};
    t.patterns = {QStringLiteral("*.wav")};
    t.removeNoneText =
        QStringLiteral("No files are currently selected to remove from the encode list.  ");
    t.convertTip = QStringLiteral("Encode / Stop Encoding Toggle");
    t.runCaption = QStringLiteral("&Encode");
    t.helpTopic = QStringLiteral("Convert WAV to MP3");
    return t;
}

FileQueueForm::QueueTexts queueTexts() {
    FileQueueForm::QueueTexts t;
    t.idleCaption = QStringLiteral("&Encode");
    t.runningCaption = QStringLiteral("&Stop Encoding");
    t.runningLabel = QStringLiteral("Currently Encoding File:  ");
    t.folderPrompt = QStringLiteral("Select Folder for MP3 Output:");
    t.outputSetting = QStringLiteral("Encode Output Path");
    t.sourceExtensions = {QStringLiteral(".wav")};
    t.outputExtension = QStringLiteral(".mp3");
    t.successText = QStringLiteral("The file list has been successfully encoded.");
    t.stopText = QStringLiteral("Encode process has been stopped.");
    t.errorText = QStringLiteral("An error occurred while attempting to encode file: ");
    return t;
}

const QString kDownMixSetting = QStringLiteral("DownMix Encode");
const QString kNoteSetting = QStringLiteral("Show Encode Message");

}  // namespace

frmEncode::frmEncode() : FileQueueForm(QStringLiteral("frmEncode"), listTexts(), queueTexts()) {
    EncodeMenu = RunMenu;
    mnuSettings = new QMenu(QStringLiteral("&Settings"), this);
    FileMenu->insertMenu(ExitMenu, mnuSettings);
    Bitrates = new BitrateMenu(mnuSettings, QStringLiteral("Encode Bitrate"));
    mnuDownMix = mnuSettings->addAction(QStringLiteral("DownMix"));
    mnuDownMix->setCheckable(true);

    Mp3Enc1 = Components::create<Mp3Encoder>();
    attach(Mp3Enc1.get(), &Mp3Encoder::Start, &Mp3Encoder::Stop, &Mp3Encoder::EncodeProgress,
           &Mp3Encoder::EncodeDone);
    Form_Load();
}

frmEncode::~frmEncode() = default;

void frmEncode::Form_Load() {
    mnuDownMix->setChecked(CBool(ReadAppSetting(kDownMixSetting, CStr(false))).value_or(false));
    if (CBool(ReadAppSetting(kNoteSetting, CStr(true))).value_or(false)) {
        MsgBoxShow(
            QStringLiteral(
                "This feature works correctly only on 16-bit, true wave audio.  If your WAV file "
                "is not 16-bit, this option will not product a valid MP3 file.  \r\n\r\n"
                "It is very simple to convert your existing WAV file to 16-bit using the Batch "
                "WAV Conversion module.  However, lesser quality WAV files are usually much "
                "smaller in size; therefore the MP3 conversion most often will not reduce the "
                "size much as the quality has already been decreased."),
            Mb::Information | Mb::SetForeground, QStringLiteral("Important Note:"), this);
        // Once in the life of the installation, whatever the user does.
        SaveAppSetting(kNoteSetting, CStr(false));
    }
}

void frmEncode::prepareComponent() {
    Mp3Enc1->setBitrate(Bitrates->storedBitrate());
    Mp3Enc1->setDownMix(mnuDownMix->isChecked());
}

bool frmEncode::unloadEvent() {
    SaveAppSetting(kDownMixSetting, CStr(mnuDownMix->isChecked()));
    return FileQueueForm::unloadEvent();
}

}  // namespace cantovel
