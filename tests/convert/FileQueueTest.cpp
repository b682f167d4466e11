// The WAV to MP3 and MP3 to WAV queues on scripted components: the list, the snapshot
// run, the guards, the stop and error paths and the texts they leave.
#include <gtest/gtest.h>

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QUrl>

#include "app/Runtime.h"
#include "app/Settings.h"
#include "convert/BitrateMenu.h"
#include "convert/FileConversionFixture.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "player/frmTemp.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kStopped = QStringLiteral("Encode process has been stopped.");
const QString kSuccess = QStringLiteral("The file list has been successfully encoded.");
const QString kNote = QStringLiteral("Important Note:");

class EncodeQueueTest : public FileConversionFixture {
  protected:
    frmEncode& open() { return Forms::touch<frmEncode>(); }
    FakeMp3Encoder& encoder() { return *FakeMp3Encoder::latest(); }
    // Starts a run of the list into out().
    void start(FileQueueForm& w) {
        dialogs->scriptFolder(out());
        w.RunMenu->trigger();
    }
};

TEST_F(EncodeQueueTest, TheNoteComesOnceInTheLifeOfTheInstallation) {
    frmEncode& w = open();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].title, kNote);
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(
        QStringLiteral("This feature works correctly only on 16-bit, true wave audio.  If your "
                       "WAV file is not 16-bit, this option will not product a valid MP3 file.  "
                       "\r\n\r\nIt is very simple")));
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Information);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Show Encode Message"), {}), QStringLiteral("False"));
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Cantovel - Convert WAV to MP3"));
    w.unload();
    settle();
    open();
    EXPECT_EQ(msgBox().shown.size(), 1);
}

TEST_F(EncodeQueueTest, SettingsGiveTheBitrateAndDownMixOfEachStart) {
    SaveAppSetting(QStringLiteral("Encode Bitrate"), QStringLiteral("0"));
    SaveAppSetting(QStringLiteral("DownMix Encode"), CStr(true));
    frmEncode& w = open();
    EXPECT_TRUE(w.Bitrates->mnuBitrate[0]->isChecked());
    EXPECT_FALSE(w.Bitrates->mnuBitrate[2]->isChecked());
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
    ASSERT_EQ(encoder().startSettings.size(), 2);
    EXPECT_EQ(encoder().startSettings[0], qMakePair(qint32(32000), true));
    EXPECT_EQ(encoder().startSettings[1], qMakePair(qint32(256000), false));
    // DownMix is kept when the window goes.
    w.unload();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("DownMix Encode"), {}), QStringLiteral("False"));
}

TEST_F(EncodeQueueTest, ARunEncodesTheListIntoTheChosenFolderAndEmptiesIt) {
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
    ASSERT_EQ(dialogs->calls.size(), 1);
    EXPECT_EQ(dialogs->calls[0].prompt, QStringLiteral("Select Folder for MP3 Output:"));
    EXPECT_EQ(dialogs->calls[0].startFolder, QStringLiteral("/somewhere"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Output Path"), {}), out());
    EXPECT_EQ(w.OutputFolder, out() + u'/');
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Stop Encoding"));
    EXPECT_FALSE(w.List1->isEnabled());
    EXPECT_EQ(w.Label1->text(), QStringLiteral("Currently Encoding File:  ") + a + " (1 of 2)");
    EXPECT_EQ(contents(out() + QStringLiteral("/a.mp3")), a);

    encoder().run.frameTotal = 400;
    encoder().run.progress(100);
    EXPECT_EQ(w.Gauge->value(), 25);
    encoder().run.finish();
    EXPECT_EQ(w.Label1->text(), QStringLiteral("Currently Encoding File:  ") + b + " (2 of 2)");
    // An upper-case extension is a WAV all the same.
    EXPECT_EQ(encoder().run.setFilesCalls.last(), qMakePair(b, out() + QStringLiteral("/b.mp3")));
    encoder().run.finish();

    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Encode"));
    EXPECT_TRUE(w.List1->isEnabled());
    EXPECT_EQ(w.List1->count(), 0);
    EXPECT_EQ(w.Gauge->value(), 0);
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(EncodeQueueTest, AStopKeepsTheListButAfterOneCompleteRunSpeaksOfSuccess) {
    frmEncode& w = open();
    w.addEntry(file(QStringLiteral("a.wav")));
    w.addEntry(file(QStringLiteral("b.wav")));
    start(w);
    encoder().run.finish();
    w.Toolbar1_ButtonClick(QStringLiteral("Convert"));
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_EQ(rows(w.List1).size(), 2);
    EXPECT_TRUE(w.List1->isEnabled());
    EXPECT_FALSE(encoder().run.running);
    EXPECT_GE(encoder().run.stops, 1);

    start(w);
    encoder().run.finish();
    encoder().run.finish();
    EXPECT_TRUE(w.Finished);
    w.addEntry(file(QStringLiteral("c.wav")));
    start(w);
    w.RunMenu_Click();
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(w.List1->count(), 1);
}

TEST_F(EncodeQueueTest, AnEntryOfAnotherExtensionStopsTheRunWhenItsTurnComes) {
    frmEncode& w = open();
    const QString typed = file(QStringLiteral("notes.txt"));
    dialogs->scriptFiles({file(QStringLiteral("a.wav")), typed});
    w.AddMenu_Click();
    ASSERT_EQ(w.List1->count(), 2);
    start(w);
    encoder().run.finish();
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Encode"));
    EXPECT_EQ(encoder().run.setFilesCalls.size(), 1);
    EXPECT_EQ(w.List1->count(), 2);
}

TEST_F(EncodeQueueTest, ARefusedSourceShowsTheErrorAndTheQueueGoesOn) {
    frmEncode& w = open();
    msgBox().reset();
    w.addEntry(file(QStringLiteral("cut.wav")));
    w.addEntry(file(QStringLiteral("good.wav")));
    encoder().run.script(QStringLiteral("cut.wav"), Mp3Encoder::SourceDamaged, true);
    start(w);
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].text,
              QStringLiteral("An error occurred while attempting to encode file: Invalid, "
                             "missing, or inappropriate source audio file."));
    EXPECT_EQ(msgBox().shown[0].icon(), Mb::Exclamation);
    EXPECT_TRUE(msgBox().shown[0].foreground());
    EXPECT_TRUE(encoder().run.running);
    EXPECT_TRUE(encoder().run.setFilesCalls.last().first.endsWith(QStringLiteral("good.wav")));
    encoder().run.finish();
    EXPECT_EQ(w.Label1->text(), kSuccess);

    // A refusal without a run-time error takes the stop path instead.
    w.addEntry(file(QStringLiteral("odd.wav")));
    w.addEntry(file(QStringLiteral("next.wav")));
    encoder().run.script(QStringLiteral("odd.wav"), Mp3Encoder::SourceNotAudio);
    w.Finished = false;  // as a fresh window would have it
    start(w);
    EXPECT_EQ(w.Label1->text(), kStopped);
    EXPECT_FALSE(w.Running);
    EXPECT_EQ(w.List1->count(), 2);
}

TEST_F(EncodeQueueTest, TwoSourcesWithOneTitleGiveOneOutputTheLater) {
    frmEncode& w = open();
    const QString first = file(QStringLiteral("one/song.wav"));
    const QString later = file(QStringLiteral("two/song.wav"));
    w.addEntry(first);
    w.addEntry(later);
    encoder().run.autoRun = true;
    start(w);
    clock().advance(2000);
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(QDir(out()).entryList(QDir::Files), QStringList{QStringLiteral("song.mp3")});
    EXPECT_EQ(contents(out() + QStringLiteral("/song.mp3")), later);
}

TEST_F(EncodeQueueTest, DropsTakeWavFilesAndTheWavFilesOfFoldersEvenDuringARun) {
    frmEncode& w = open();
    msgBox().reset();
    const QString noWav = tempDir() + QStringLiteral("/nowav");
    QDir().mkpath(noWav);
    file(QStringLiteral("nowav/x.mp3"));
    w.Process_DROPFILES({noWav, file(QStringLiteral("x.mp3")), tempDir() + "/missing.wav"});
    EXPECT_EQ(w.List1->count(), 0);

    const QString upper = file(QStringLiteral("LOUD.WAV"));
    w.Process_DROPFILES({upper, file(QStringLiteral("first.wav"))});
    EXPECT_EQ(rows(w.List1), QStringList({upper, tempDir() + QStringLiteral("/first.wav")}));

    start(w);
    const QString folder = tempDir() + QStringLiteral("/more");
    file(QStringLiteral("more/b.wav"));
    file(QStringLiteral("more/a.wav"));
    file(QStringLiteral("more/sub/c.wav"));
    w.Process_DROPFILES({folder});
    EXPECT_EQ(rows(w.List1).mid(2),
              QStringList({folder + QStringLiteral("/a.wav"), folder + QStringLiteral("/b.wav")}));
    // The run goes through its snapshot only.
    encoder().run.finish();
    encoder().run.finish();
    EXPECT_EQ(encoder().run.setFilesCalls.size(), 2);
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

// A drop the way the window system hands it over: enter, then drop, on the list's viewport.
bool dropOn(QWidget* target, const QStringList& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& p : paths) urls << QUrl::fromLocalFile(p);
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
    return true;
}

TEST_F(EncodeQueueTest, FilesDroppedOnTheListArriveThroughItsHookAlsoDuringARun) {
    frmEncode& w = open();
    const QString wav = file(QStringLiteral("dropped.wav"));
    ASSERT_TRUE(dropOn(w.List1->viewport(), {wav, file(QStringLiteral("x.ogg"))}));
    EXPECT_EQ(rows(w.List1), QStringList{wav});

    // The run disables the list; what is dropped on it still arrives, and the run keeps
    // to its snapshot.
    start(w);
    ASSERT_FALSE(w.List1->isEnabled());
    const QString during = file(QStringLiteral("during.wav"));
    ASSERT_TRUE(dropOn(w.List1->viewport(), {during}));
    EXPECT_EQ(rows(w.List1), QStringList({wav, during}));
    encoder().run.finish();
    EXPECT_EQ(encoder().run.setFilesCalls.size(), 1);
}

TEST_F(EncodeQueueTest, EditingIsRefusedDuringARunAndFollowsTheSelection) {
    frmEncode& w = open();
    msgBox().reset();
    const QString guard = QStringLiteral(
        "If you wish to adjust the list, you must stop the currently running process "
        "beforehand.");
    w.RemoveMenu_Click();
    EXPECT_EQ(msgBox().texts().last(),
              QStringLiteral("No files are currently in your list to remove."));

    dialogs->scriptFiles({file(QStringLiteral("d1/a.wav")), file(QStringLiteral("d1/b.wav")),
                          file(QStringLiteral("d1/c.wav"))});
    w.AddMenu_Click();
    const DialogCall& add = dialogs->calls.last();
    EXPECT_EQ(add.request.title, QStringLiteral("Select File(s) to Encode:"));
    EXPECT_EQ(add.request.filter, QStringLiteral("WAV Files (16-bit)|*.wav"));
    EXPECT_TRUE(add.request.multiSelect);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Add Dialog Path"), {}),
              tempDir() + QStringLiteral("/d1"));
    EXPECT_GT(w.MaxEntryWidth, 0);

    // Move the last up, then the first down past the end it can't pass.
    w.List1->setCurrentRow(2);
    w.MoveUpMenu_Click();
    EXPECT_EQ(rows(w.List1).join(u',').count(QStringLiteral("c.wav")), 1);
    EXPECT_TRUE(rows(w.List1)[1].endsWith(QStringLiteral("c.wav")));
    EXPECT_EQ(w.List1->currentRow(), 1);
    w.List1->setCurrentRow(2);
    w.MoveDownMenu_Click();
    EXPECT_TRUE(rows(w.List1)[2].endsWith(QStringLiteral("b.wav")));

    w.List1->clearSelection();
    w.EditMenu_Opening();
    EXPECT_FALSE(w.RemoveMenu->isEnabled());
    EXPECT_FALSE(w.MoveUpMenu->isEnabled());
    w.Toolbar1_ButtonClick(QStringLiteral("Remove"));
    EXPECT_EQ(msgBox().texts().last(),
              QStringLiteral("No files are currently selected to remove from the encode list.  "
                             "\r\nIf you wish to remove files from the list, select the files "
                             "to remove before proceeding."));
    w.List1->item(0)->setSelected(true);
    w.List1->item(2)->setSelected(true);
    w.EditMenu_Opening();
    EXPECT_TRUE(w.RemoveMenu->isEnabled());
    EXPECT_FALSE(w.MoveDownMenu->isEnabled());
    w.Toolbar1_ButtonClick(QStringLiteral("Remove"));
    ASSERT_EQ(w.List1->count(), 1);
    EXPECT_TRUE(rows(w.List1)[0].endsWith(QStringLiteral("c.wav")));

    start(w);
    w.EditMenu_Opening();
    EXPECT_FALSE(w.AddMenu->isEnabled());
    const int calls = dialogs->calls.size();
    msgBox().reset();
    w.AddMenu_Click();
    w.RemoveMenu_Click();
    w.MoveUpMenu_Click();
    EXPECT_EQ(msgBox().texts(), QStringList(3, guard));
    EXPECT_EQ(dialogs->calls.size(), calls);
}

TEST_F(EncodeQueueTest, NothingStartsOnAnEmptyListOrACancelledFolder) {
    frmEncode& w = open();
    msgBox().reset();
    w.RunMenu_Click();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(QStringLiteral(
        "Your list is currently empty. \r\n\r\nSelect the files you wish to be included")));
    EXPECT_TRUE(dialogs->calls.isEmpty());

    w.addEntry(file(QStringLiteral("a.wav")));
    dialogs->scriptCancel();
    w.RunMenu_Click();
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Encode"));
    EXPECT_TRUE(w.List1->isEnabled());
    EXPECT_TRUE(encoder().run.setFilesCalls.isEmpty());
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Output Path"), QStringLiteral("unset")),
              QStringLiteral("unset"));
}

TEST_F(EncodeQueueTest, TheConversionsMenuOpensTheWindowsOnce) {
    frmTemp::get().mnuWAVtoMP3_Click();
    frmTemp::get().mnuWAVtoMP3_Click();
    frmTemp::get().mnuMP3toWAV_Click();
    int encoders = 0, decoders = 0;
    for (Form* f : Forms::all()) {
        encoders += qobject_cast<frmEncode*>(f) != nullptr;
        decoders += qobject_cast<frmDecode*>(f) != nullptr;
    }
    EXPECT_EQ(encoders, 1);
    EXPECT_EQ(decoders, 1);
    EXPECT_TRUE(Forms::find<frmEncode>()->isVisible());
}

class DecodeQueueTest : public EncodeQueueTest {
  protected:
    FakeMp3Decoder& decoder() { return *FakeMp3Decoder::latest(); }
};

TEST_F(DecodeQueueTest, AnMp2AndAnMp3OfOneTitleGiveOneWavTheLater) {
    frmDecode& w = Forms::touch<frmDecode>();
    EXPECT_TRUE(msgBox().shown.isEmpty());  // no note here
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Cantovel - Convert MP3 to WAV"));
    const QString mp2 = file(QStringLiteral("a.mp2")), mp3 = file(QStringLiteral("x/a.mp3"));
    const QString upper = file(QStringLiteral("C.MP3"));
    w.Process_DROPFILES({mp2, mp3, upper});
    ASSERT_EQ(w.List1->count(), 3);
    decoder().run.autoRun = true;
    start(w);
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for WAV Output:"));
    EXPECT_EQ(w.DecodeMenu->text(), QStringLiteral("&Stop Decoding"));
    clock().advance(3000);
    EXPECT_EQ(w.Label1->text(), QStringLiteral("The file list has been successfully decoded."));
    QStringList made = QDir(out()).entryList(QDir::Files);
    made.sort();
    EXPECT_EQ(made, QStringList({QStringLiteral("C.wav"), QStringLiteral("a.wav")}));
    EXPECT_EQ(contents(out() + QStringLiteral("/a.wav")), mp3);
}

TEST_F(DecodeQueueTest, ANonMpegSourceTakesTheErrorPathAndAStopSaysDecode) {
    frmDecode& w = Forms::touch<frmDecode>();
    w.addEntry(file(QStringLiteral("fake.mp3")));
    w.addEntry(file(QStringLiteral("real.mp3")));
    w.addEntry(file(QStringLiteral("last.mp3")));
    decoder().run.script(QStringLiteral("fake.mp3"), Mp3Decoder::SourceNotMpeg, true);
    start(w);
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("An error occurred while attempting to decode file: "
                                         "Invalid, missing, or inappropriate source audio file.")});
    EXPECT_TRUE(decoder().run.running);
    EXPECT_EQ(w.Label1->text().section(u'(', -1), QStringLiteral("2 of 3)"));
    w.Toolbar1_ButtonClick(QStringLiteral("Convert"));
    EXPECT_EQ(w.Label1->text(), QStringLiteral("Decode process has been stopped."));
    EXPECT_EQ(w.DecodeMenu->text(), QStringLiteral("&Decode"));
    EXPECT_FALSE(decoder().run.running);
    EXPECT_EQ(w.List1->count(), 3);
}

}  // namespace
