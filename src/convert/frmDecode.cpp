#include "convert/frmDecode.h"

#include "platform/Components.h"

namespace cantovel {

namespace {

FileListForm::ListTexts listTexts() {
    FileListForm::ListTexts t;
    t.caption = QStringLiteral("Cantovel - Convert MP3 to WAV");
    t.label = QStringLiteral(
        "To begin, mark the files you want to decode by selecting \"Add File(s) to List\" from "
        "the toolbar or \"Add\" from the Edit menu.  Once the desired files are in your list, "
        "choose \"Decode\" from the toolbar or File menu to process the files.");
    t.addTitle = QStringLiteral("Select File(s) to Decode:");
    t.addFilter = QStringLiteral("MP3 Files|*.mp3;*.mp2");
    t.addPathSetting = QStringLiteral("Decode Add Dialog Path");
    t.extensions = {QStringLiteral(".mp3"), QStringLiteral(".mp2")};
    t.patterns = {QStringLiteral("*.mp3"), QStringLiteral("*.mp2")};
    t.removeNoneText =
        QStringLiteral("No files are currently selected to remove from the decode list.  ");
    t.convertTip = QStringLiteral("Encode / Stop Encoding Toggle");
    t.runCaption = QStringLiteral("&Decode");
    t.helpTopic = QStringLiteral("Convert MP3 to WAV");
    return t;
}

FileQueueForm::QueueTexts queueTexts() {
    FileQueueForm::QueueTexts t;
    t.idleCaption = QStringLiteral("&Decode");
    t.runningCaption = QStringLiteral("&Stop Decoding");
    t.runningLabel = QStringLiteral("Currently Decoding File:  ");
    t.folderPrompt = QStringLiteral("Select Folder for WAV Output:");
    t.outputSetting = QStringLiteral("Decode Output Path");
    t.sourceExtensions = {QStringLiteral(".mp3"), QStringLiteral(".mp2")};
    t.outputExtension = QStringLiteral(".wav");
    t.successText = QStringLiteral("The file list has been successfully decoded.");
    t.stopText = QStringLiteral("Decode process has been stopped.");
    t.errorText = QStringLiteral("An error occurred while attempting to decode file: ");
    return t;
}

}  // namespace

frmDecode::frmDecode() : FileQueueForm(QStringLiteral("frmDecode"), listTexts(), queueTexts()) {
    DecodeMenu = RunMenu;
    Mp3Play1 = Components::create<Mp3Decoder>();
    attach(Mp3Play1.get(), &Mp3Decoder::StartDecode, &Mp3Decoder::StopDecode,
           &Mp3Decoder::DecodeProgress, &Mp3Decoder::DecodeDone);
}

frmDecode::~frmDecode() = default;

}  // namespace cantovel
