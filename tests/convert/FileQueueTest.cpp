// The WAV to MP3 and MP3 to WAV queues and the WAV batch converter on scripted components,
// driven by their menus, toolbar and drops: the list, the snapshot run, the guards, the
// stop and error paths, the format dialog and the texts they leave.
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QProgressBar>
#include <QToolBar>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "convert/BitrateMenu.h"
#include "convert/FileConversionFixture.h"
#include "convert/frmBatchConvert.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "player/frmTemp.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kStopped = QStringLiteral("Encode process has been stopped.");
const QString kSuccess = QStringLiteral("The file list has been successfully encoded.");

class EncodeQueueTest : public FileConversionFixture {
  protected:
    frmEncode& open() { return Forms::touch<frmEncode>(); }
    FakeMp3Encoder& encoder() { return *FakeMp3Encoder::latest(); }
    // Starts a run of the list into out().
    void start(FileQueueForm& w) {
        dialogs->scriptFolder(out());
        w.RunMenu->trigger();
    }
    static void tool(FileQueueForm& w, const char* key) {
        w.Toolbar1->findChild<QAction*>(QLatin1String(key))->trigger();
    }
};

TEST_F(EncodeQueueTest, TheNoteOnceAndTheSettingsOfEachStart) {
    SaveAppSetting(QStringLiteral("Encode Bitrate"), QStringLiteral("0"));
    SaveAppSetting(QStringLiteral("DownMix Encode"), CStr(true));
    frmEncode& w = open();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].title, QStringLiteral("Important Note:"));
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(
        QStringLiteral("This feature works correctly only on 16-bit, true wave audio.  If your "
                       "WAV file is not 16-bit, this option will not product a valid MP3 file.")));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Show Encode Message"), {}), QStringLiteral("False"));
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Cantovel - Convert WAV to MP3"));
    EXPECT_TRUE(w.Bitrates->mnuBitrate[0]->isChecked());
    EXPECT_TRUE(w.mnuDownMix->isChecked());
    w.addEntry(file(QStringLiteral("a.wav")));
    w.addEntry(file(QStringLiteral("b.wav")));
    start(w);
    // Changed during the run: the next file takes the new rate, written at once.
    w.Bitrates->mnuBitrate[3]->trigger();
    w.mnuDownMix->trigger();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Bitrate"), {}), QStringLiteral("3"));
    encoder().run.finish();
    encoder().run.finish();
    EXPECT_EQ(encoder().startSettings,
              (QList<QPair<qint32, bool>>{{32000, true}, {256000, false}}));
    tool(w, "Exit");
    settle();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("DownMix Encode"), {}), QStringLiteral("False"));
    open();
    EXPECT_EQ(msgBox().shown.size(), 1);
}

TEST_F(EncodeQueueTest, ARunEncodesTheListIntoTheChosenFolderAndAStopKeepsIt) {
    frmEncode& w = open();
    const QString a = file(QStringLiteral("in/a.wav")), b = file(QStringLiteral("in/b.WAV"));
    w.addEntry(a);
    w.addEntry(b);
    // An old output is overwritten without a question, even a read-only one.
    QFile old(out() + QStringLiteral("/a.mp3"));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.close();
    old.setPermissions(QFile::ReadOwner);
    msgBox().reset();
    SaveAppSetting(QStringLiteral("Encode Output Path"), QStringLiteral("/somewhere"));
    start(w);
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for MP3 Output:"));
    EXPECT_EQ(dialogs->calls.last().startFolder, QStringLiteral("/somewhere"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Output Path"), {}), out());
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Stop Encoding"));
    EXPECT_FALSE(w.List1->isEnabled());
    EXPECT_EQ(w.Label1->text(), QStringLiteral("Currently Encoding File:  ") + a + " (1 of 2)");
    EXPECT_EQ(contents(out() + QStringLiteral("/a.mp3")), a);
    encoder().run.frameTotal = 400;
    encoder().run.progress(100);
    EXPECT_EQ(w.Gauge->value(), 25);
    encoder().run.finish();
    // An upper-case extension is a WAV all the same.
    EXPECT_EQ(encoder().run.setFilesCalls.last(), qMakePair(b, out() + QStringLiteral("/b.mp3")));
    // A stop keeps the list.
    tool(w, "Convert");
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_EQ(w.List1->count(), 2);
    EXPECT_TRUE(w.List1->isEnabled());
    EXPECT_FALSE(encoder().run.running);

    start(w);
    encoder().run.finish();
    encoder().run.finish();
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Encode"));
    EXPECT_EQ(w.List1->count(), 0);
    EXPECT_EQ(w.Gauge->value(), 0);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    // After one complete run, a stop speaks of success.
    w.addEntry(file(QStringLiteral("c.wav")));
    start(w);
    w.RunMenu->trigger();
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(w.List1->count(), 1);
}

TEST_F(EncodeQueueTest, RefusedSourcesAreToldOrStopTheRunAndTwoOfOneTitleGiveTheLater) {
    frmEncode& w = open();
    msgBox().reset();
    w.addEntry(file(QStringLiteral("cut.wav")));
    w.addEntry(file(QStringLiteral("one/song.wav")));
    const QString later = file(QStringLiteral("two/song.wav"));
    w.addEntry(later);
    encoder().run.script(QStringLiteral("cut.wav"), Mp3Encoder::SourceDamaged, true);
    encoder().run.autoRun = true;
    start(w);
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("An error occurred while attempting to encode file: "
                                         "Invalid, missing, or inappropriate source audio file.")});
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Exclamation);
    EXPECT_TRUE(msgBox().shown[0].foreground());
    clock().advance(3000);
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(QDir(out()).entryList(QDir::Files), QStringList{QStringLiteral("song.mp3")});
    EXPECT_EQ(contents(out() + QStringLiteral("/song.mp3")), later);

    // A refusal without a run-time error, or an entry of another kind, stops the run there.
    for (const QString& name : {QStringLiteral("odd.wav"), QStringLiteral("notes.txt")}) {
        encoder().run.autoRun = false;
        encoder().run.script(QStringLiteral("odd.wav"), Mp3Encoder::SourceNotAudio);
        w.Finished = false;  // as a fresh window would have it
        dialogs->scriptFiles({file(QStringLiteral("a.wav")), file(name)});
        w.AddMenu->trigger();
        start(w);
        encoder().run.finish();
        EXPECT_EQ(w.Label1->text(), kStopped) << name.toStdString();
        EXPECT_FALSE(w.Running);
        EXPECT_EQ(w.List1->count(), 2);
        w.List1->clear();
    }
}

TEST_F(EncodeQueueTest, DropsTakeWavFilesAndTheWavFilesOfFoldersAlsoDuringARun) {
    frmEncode& w = open();
    msgBox().reset();
    const QString noWav = tempDir() + QStringLiteral("/nowav");
    file(QStringLiteral("nowav/x.mp3"));
    drop(w, {noWav, file(QStringLiteral("x.mp3")), tempDir() + "/missing.wav"});
    EXPECT_EQ(w.List1->count(), 0);
    const QString upper = file(QStringLiteral("LOUD.WAV"));
    drop(w, {upper, file(QStringLiteral("first.wav"))});
    EXPECT_EQ(rows(w.List1), QStringList({upper, tempDir() + QStringLiteral("/first.wav")}));

    // The run disables the list; what is dropped on it still arrives, and the run keeps
    // to its snapshot.
    start(w);
    ASSERT_FALSE(w.List1->isEnabled());
    const QString folder = tempDir() + QStringLiteral("/more");
    file(QStringLiteral("more/b.wav"));
    file(QStringLiteral("more/a.wav"));
    file(QStringLiteral("more/sub/c.wav"));
    drop(w, {folder});
    EXPECT_EQ(rows(w.List1).mid(2),
              QStringList({folder + QStringLiteral("/a.wav"), folder + QStringLiteral("/b.wav")}));
    encoder().run.finish();
    encoder().run.finish();
    EXPECT_EQ(encoder().run.setFilesCalls.size(), 2);
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_TRUE(msgBox().shown.isEmpty());
    // The files the run converted leave the list; those dropped during it wait for the next.
    EXPECT_EQ(rows(w.List1),
              QStringList({folder + QStringLiteral("/a.wav"), folder + QStringLiteral("/b.wav")}));
}

TEST_F(EncodeQueueTest, EditingFollowsTheSelectionAndIsRefusedDuringARun) {
    frmEncode& w = open();
    msgBox().reset();
    w.RunMenu->trigger();
    w.RemoveMenu->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(QStringLiteral(
        "Your list is currently empty. \r\n\r\nSelect the files you wish to be included")));
    EXPECT_EQ(msgBox().shown[1].text,
              QStringLiteral("No files are currently in your list to remove."));
    EXPECT_TRUE(dialogs->calls.isEmpty());

    dialogs->scriptFiles({file(QStringLiteral("d1/a.wav")), file(QStringLiteral("d1/b.wav")),
                          file(QStringLiteral("d1/c.wav"))});
    tool(w, "Add");
    const DialogCall& add = dialogs->calls.last();
    EXPECT_EQ(add.request.title, QStringLiteral("Select File(s) to Encode:"));
    EXPECT_EQ(add.request.filter, QStringLiteral("WAV Files (16-bit)|*.wav"));
    EXPECT_TRUE(add.request.multiSelect);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Add Dialog Path"), {}),
              tempDir() + QStringLiteral("/d1"));
    EXPECT_GT(w.MaxEntryWidth, 0);
    // Move the last up, then the last down past the end it can't pass.
    w.List1->setCurrentRow(2);
    w.MoveUpMenu->trigger();
    EXPECT_TRUE(rows(w.List1)[1].endsWith(QStringLiteral("c.wav")));
    EXPECT_EQ(w.List1->currentRow(), 1);
    w.List1->setCurrentRow(2);
    w.MoveDownMenu->trigger();
    EXPECT_TRUE(rows(w.List1)[2].endsWith(QStringLiteral("b.wav")));

    w.List1->clearSelection();
    emit w.EditMenu->aboutToShow();
    EXPECT_FALSE(w.RemoveMenu->isEnabled());
    EXPECT_FALSE(w.MoveUpMenu->isEnabled());
    tool(w, "Remove");
    EXPECT_EQ(msgBox().texts().last(),
              QStringLiteral("No files are currently selected to remove from the encode list.  "
                             "\r\nIf you wish to remove files from the list, select the files "
                             "to remove before proceeding."));
    w.List1->item(0)->setSelected(true);
    w.List1->item(2)->setSelected(true);
    emit w.EditMenu->aboutToShow();
    EXPECT_FALSE(w.MoveDownMenu->isEnabled());
    tool(w, "Remove");
    EXPECT_EQ(rows(w.List1), QStringList{tempDir() + QStringLiteral("/d1/c.wav")});

    // A cancelled folder starts nothing and stores nothing.
    dialogs->scriptCancel();
    w.RunMenu->trigger();
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Encode"));
    EXPECT_TRUE(encoder().run.setFilesCalls.isEmpty());
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Output Path"), QStringLiteral("unset")),
              QStringLiteral("unset"));

    start(w);
    const int calls = dialogs->calls.size();
    msgBox().reset();
    w.AddMenu->trigger();
    tool(w, "Add");
    w.RemoveMenu->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList(3, QStringLiteral("If you wish to adjust the list, "
                                                              "you must stop the currently "
                                                              "running process beforehand.")));
    EXPECT_EQ(dialogs->calls.size(), calls);
    emit w.EditMenu->aboutToShow();
    EXPECT_FALSE(w.AddMenu->isEnabled());
}

TEST_F(EncodeQueueTest, DecodingMakesOneWavATitleAndANonMpegSourceTakesTheErrorPath) {
    frmDecode& w = Forms::touch<frmDecode>();
    FakeMp3Decoder& decoder = *FakeMp3Decoder::latest();
    EXPECT_TRUE(msgBox().shown.isEmpty());  // no note here
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Cantovel - Convert MP3 to WAV"));
    const QString mp2 = file(QStringLiteral("a.mp2")), mp3 = file(QStringLiteral("x/a.mp3"));
    drop(w, {mp2, mp3, file(QStringLiteral("C.MP3"))});
    ASSERT_EQ(w.List1->count(), 3);
    decoder.run.autoRun = true;
    start(w);
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for WAV Output:"));
    EXPECT_EQ(w.DecodeMenu->text(), QStringLiteral("&Stop Decoding"));
    clock().advance(3000);
    EXPECT_EQ(w.Label1->text(), QStringLiteral("The file list has been successfully decoded."));
    QStringList made = QDir(out()).entryList(QDir::Files);
    made.sort();
    EXPECT_EQ(made, QStringList({QStringLiteral("C.wav"), QStringLiteral("a.wav")}));
    EXPECT_EQ(contents(out() + QStringLiteral("/a.wav")), mp3);  // the later of one title

    decoder.run.autoRun = false;
    w.Finished = false;  // as a fresh window would have it
    w.addEntry(file(QStringLiteral("fake.mp3")));
    w.addEntry(file(QStringLiteral("real.mp3")));
    w.addEntry(file(QStringLiteral("last.mp3")));
    decoder.run.script(QStringLiteral("fake.mp3"), Mp3Decoder::SourceNotMpeg, true);
    start(w);
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("An error occurred while attempting to decode file: "
                                         "Invalid, missing, or inappropriate source audio file.")});
    EXPECT_TRUE(decoder.run.running);
    EXPECT_EQ(w.Label1->text().section(u'(', -1), QStringLiteral("2 of 3)"));
    tool(w, "Convert");
    EXPECT_EQ(w.Label1->text(), QStringLiteral("Decode process has been stopped."));
    EXPECT_EQ(w.DecodeMenu->text(), QStringLiteral("&Decode"));
    EXPECT_EQ(w.List1->count(), 3);
}

// The batch converter.
namespace batch {

const QString kDone = QStringLiteral("Batch WAV conversion process has successfully completed.");
const QString kStopped = QStringLiteral("WAV batch conversion process has been stopped.");
const QString kEmpty = QStringLiteral(
    "No files are currently listed in your conversion list.  Please add the file(s) you wish "
    "to convert before proceeding.");
const WaveFormat kMuLaw{WaveFormat::MuLaw, 8000, 1};

class BatchConvertTest : public FileConversionFixture {
  protected:
    frmBatchConvert& open() {
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        for (const char* name : {"a.wav", "b.wav", "c.wav"})
            w.addEntry(file(QStringLiteral("in/") + QLatin1String(name)));
        return w;
    }
    FakeWaveChain& chain() { return *FakeWaveChain::latest(); }
    FakeFormatChooser& acm() { return *FakeFormatChooser::latest(); }
    void start(frmBatchConvert& w) {
        dialogs->scriptFolder(out());
        acm().script({kMuLaw});
        w.ConvertMenu->trigger();
        settle();
    }
};

TEST_F(BatchConvertTest, ConvertsEveryFileIntoTheFolderAndAFileAddedDuringTheRunJoinsIt) {
    frmBatchConvert& w = open();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("WAV Batch Converter"));
    start(w);
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for WAV Output:"));
    ASSERT_EQ(acm().showings.size(), 1);
    EXPECT_EQ(acm().showings[0].title, QStringLiteral("Select..."));
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Stop Conversion"));
    // The gauge follows the source while the timer runs.
    chain().length = 400;
    chain().position = 100;
    clock().advance(100);
    EXPECT_EQ(w.Gauge->value(), 25);
    // The window stays open while a file converts, and the list isn't locked.
    EXPECT_FALSE(w.unload());
    EXPECT_TRUE(msgBox().shown.isEmpty());
    dialogs->scriptFiles({file(QStringLiteral("late.wav"))});
    w.AddMenu->trigger();
    for (int i = 0; i < 4; ++i) {
        chain().dataEnd();
        settle();
    }
    ASSERT_EQ(chain().conversions.size(), 4);
    for (const auto& c : chain().conversions) {
        EXPECT_EQ(c.format, kMuLaw);
        EXPECT_EQ(c.destination, out() + u'/' + QFileInfo(c.source).fileName());
    }
    EXPECT_EQ(w.Label1->text(), kDone);
    EXPECT_EQ(msgBox().texts(), QStringList{kDone});
    EXPECT_EQ(w.List1->count(), 0);
    EXPECT_EQ(w.Gauge->value(), 0);
    // The caption stays: an empty list answers first, then a new list's first click stops.
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Stop Conversion"));
    w.ConvertMenu->trigger();
    EXPECT_EQ(msgBox().texts().last(), kEmpty);
    w.addEntry(file(QStringLiteral("d.wav")));
    w.ConvertMenu->trigger();
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Start Conversion"));
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_EQ(chain().conversions.size(), 4);
    EXPECT_TRUE(w.unload());
}

}  // namespace batch
}  // namespace
