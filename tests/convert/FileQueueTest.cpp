// The WAV to MP3 and MP3 to WAV queues and the WAV batch converter on the real codecs,
// driven by their menus, toolbar and drops: the list, the run of a snapshot, the guards,
// the stop and error paths and the texts they leave; the results read back with mpg123
// and libsndfile, also from a disk that fills up.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <QAction>
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

using namespace cantovel;
using namespace cantovel::test;

namespace {

const QString kStopped = QStringLiteral("Encode process has been stopped.");
const QString kSuccess = QStringLiteral("The file list has been successfully encoded.");

// LAME refusing one source the way a component raises a run-time error.
class RefusingEncoder : public LameMp3Encoder {
  public:
    qint16 SetFiles(const QString& input, const QString& output) override {
        if (!input.endsWith(QStringLiteral("refused.wav")))
            return LameMp3Encoder::SetFiles(input, output);
        raise(QStringLiteral("refused"));
        return SourceDamaged;
    }
};

class FileQueueTest : public FileConversionFixture {
  protected:
    static void tool(FileListForm& w, const char* key) {
        w.Toolbar1->findChild<QAction*>(QLatin1String(key))->trigger();
    }
    static double seconds(const Mp3Info& mp3) { return double(mp3.samples) / mp3.rate; }
};

// The note once; the list edited by menu, toolbar and drops; a run that reads the settings
// at each file's start and keeps to its snapshot while drops still arrive; a stop.
TEST_F(FileQueueTest, AListEditedAndEncodedWithTheSettingsOfEachStart) {
    SaveAppSetting(QStringLiteral("Encode Bitrate"), QStringLiteral("0"));
    SaveAppSetting(QStringLiteral("DownMix Encode"), CStr(true));
    frmEncode& w = Forms::touch<frmEncode>();
    ASSERT_EQ(msgBox().shown.size(), 1);
    EXPECT_EQ(msgBox().shown[0].title, QStringLiteral("Important Note:"));
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(
        QStringLiteral("This feature works correctly only on 16-bit, true wave audio.  If your "
                       "WAV file is not 16-bit, this option will not product a valid MP3 file.")));
    msgBox().reset();
    w.RunMenu->trigger();
    w.RemoveMenu->trigger();
    ASSERT_EQ(msgBox().shown.size(), 2);
    EXPECT_TRUE(msgBox().shown[0].text.startsWith(QStringLiteral(
        "Your list is currently empty. \r\n\r\nSelect the files you wish to be included")));
    EXPECT_EQ(msgBox().shown[1].text,
              QStringLiteral("No files are currently in your list to remove."));
    EXPECT_TRUE(dialogs->calls.isEmpty());

    const QString a = wav("d1/a.wav"), b = wav("d1/b.wav"), c = wav("d1/c.wav");
    dialogs->scriptFiles({a, b, c});
    tool(w, "Add");
    const DialogCall& add = dialogs->calls.last();
    EXPECT_EQ(add.request.title, QStringLiteral("Select File(s) to Encode:"));
    EXPECT_EQ(add.request.filter, QStringLiteral("WAV Files (16-bit)|*.wav"));
    EXPECT_TRUE(add.request.multiSelect);
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Add Dialog Path"), {}),
              tempDir() + QStringLiteral("/d1"));
    // The last up, then the last down past the end it can't pass.
    w.List1->setCurrentRow(2);
    w.MoveUpMenu->trigger();
    EXPECT_EQ(w.List1->currentRow(), 1);
    w.List1->setCurrentRow(2);
    w.MoveDownMenu->trigger();
    EXPECT_EQ(rows(w.List1), QStringList({a, c, b}));

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
    w.List1->item(1)->setSelected(true);
    emit w.EditMenu->aboutToShow();
    EXPECT_FALSE(w.MoveDownMenu->isEnabled());
    tool(w, "Remove");
    EXPECT_EQ(rows(w.List1), QStringList{b});

    // Drops take WAV files, in upper case too, and nothing else.
    QDir().mkpath(tempDir() + QStringLiteral("/nowav"));
    ASSERT_TRUE(writeBytes(tempDir() + QStringLiteral("/nowav/x.mp3"), "ID3"));
    drop(w, {tempDir() + QStringLiteral("/nowav"), tempDir() + QStringLiteral("/nowav/x.mp3"),
             tempDir() + QStringLiteral("/missing.wav")});
    const QString loud = wav("LOUD.WAV");
    drop(w, {loud});
    EXPECT_EQ(rows(w.List1), QStringList({b, loud}));
    // A cancelled folder starts nothing and stores nothing.
    msgBox().reset();
    dialogs->scriptCancel();
    w.RunMenu->trigger();
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Encode"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Output Path"), QStringLiteral("unset")),
              QStringLiteral("unset"));

    // An old output is overwritten without a question, even a read-only one.
    ASSERT_TRUE(writeBytes(out() + QStringLiteral("/b.mp3"), "old"));
    QFile::setPermissions(out() + QStringLiteral("/b.mp3"), QFile::ReadOwner);
    SaveAppSetting(QStringLiteral("Encode Output Path"), QStringLiteral("/somewhere"));
    int gauge = 0;
    QObject::connect(w.Gauge, &QProgressBar::valueChanged,
                     [&](int v) { gauge = std::max(gauge, v); });
    dialogs->scriptFolder(out());
    w.RunMenu->trigger();
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for MP3 Output:"));
    EXPECT_EQ(dialogs->calls.last().startFolder, QStringLiteral("/somewhere"));
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Output Path"), {}), out());
    EXPECT_EQ(w.EncodeMenu->text(), QStringLiteral("&Stop Encoding"));
    EXPECT_EQ(w.Label1->text(), QStringLiteral("Currently Encoding File:  ") + b + " (1 of 2)");
    // Changed during the run: the next file takes the new rate, written at once.
    w.Bitrates->mnuBitrate[3]->trigger();
    w.mnuDownMix->trigger();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("Encode Bitrate"), {}), QStringLiteral("3"));
    // The list is locked, but what is dropped on it still arrives: a folder's own WAV files.
    const int calls = dialogs->calls.size();
    w.AddMenu->trigger();
    tool(w, "Add");
    w.RemoveMenu->trigger();
    EXPECT_EQ(msgBox().texts(), QStringList(3, QStringLiteral("If you wish to adjust the list, "
                                                              "you must stop the currently "
                                                              "running process beforehand.")));
    EXPECT_EQ(dialogs->calls.size(), calls);
    emit w.EditMenu->aboutToShow();
    EXPECT_FALSE(w.AddMenu->isEnabled());
    const QString more = tempDir() + QStringLiteral("/more");
    const QStringList dropped{wav("more/a.wav"), wav("more/b.wav")};
    wav("more/sub/c.wav");
    drop(w, {more});
    ASSERT_TRUE(waitUntil([&] { return w.EncodeMenu->text() == QStringLiteral("&Encode"); }));
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(msgBox().shown.size(), 3);
    EXPECT_GT(gauge, 0);
    EXPECT_EQ(w.Gauge->value(), 0);
    // The files the run converted leave the list; those dropped during it wait.
    EXPECT_EQ(rows(w.List1), dropped);
    const Mp3Info first = decodeMp3(out() + QStringLiteral("/b.mp3"));
    const Mp3Info second = decodeMp3(out() + QStringLiteral("/LOUD.mp3"));
    EXPECT_EQ(QString::number(first.bitrateKbps) + "/" + QString::number(first.channels), "32/1");
    EXPECT_EQ(QString::number(second.bitrateKbps) + "/" + QString::number(second.channels),
              "256/2");
    EXPECT_NEAR(seconds(second), 0.5, 0.01);
    EXPECT_FALSE(QFileInfo::exists(out() + QStringLiteral("/a.mp3")));

    // After one complete run, a stop speaks of success; the list stays.
    dialogs->scriptFolder(out());
    w.RunMenu->trigger();
    tool(w, "Convert");
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(rows(w.List1), dropped);
    EXPECT_TRUE(w.List1->isEnabled());
    tool(w, "Exit");
    settle();
    EXPECT_EQ(ReadAppSetting(QStringLiteral("DownMix Encode"), {}), QStringLiteral("False"));
    msgBox().reset();
    Forms::touch<frmEncode>();
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

TEST_F(FileQueueTest, ARefusedSourceIsToldOrEndsTheRunAndTwoOfOneTitleGiveTheLater) {
    Components::provideFactory<Mp3Encoder>([] { return std::make_unique<RefusingEncoder>(); });
    SaveAppSetting(QStringLiteral("Show Encode Message"), CStr(false));
    frmEncode& w = Forms::touch<frmEncode>();
    drop(w, {wav("refused.wav"), wav("one/song.wav"), wav("two/song.wav", 1.0)});
    dialogs->scriptFolder(out());
    w.RunMenu->trigger();
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("An error occurred while attempting to encode file: "
                                         "Invalid, missing, or inappropriate source audio file.")});
    ASSERT_TRUE(waitUntil([&] { return w.List1->count() == 0; }));
    EXPECT_EQ(w.Label1->text(), kSuccess);
    EXPECT_EQ(QDir(out()).entryList(QDir::Files), QStringList{QStringLiteral("song.mp3")});
    EXPECT_NEAR(seconds(decodeMp3(out() + QStringLiteral("/song.mp3"))), 1.0, 0.01);

    // A source that is no sound, or an entry of another kind, ends the run there.
    for (const QString& name : {QStringLiteral("odd.wav"), QStringLiteral("notes.txt")}) {
        w.Finished = false;  // as a fresh window would have it
        ASSERT_TRUE(writeBytes(tempDir() + u'/' + name, "RIFF"));
        dialogs->scriptFiles({wav("a.wav"), tempDir() + u'/' + name});
        w.AddMenu->trigger();
        dialogs->scriptFolder(out());
        w.RunMenu->trigger();
        ASSERT_TRUE(waitUntil([&] { return !w.Running; })) << name.toStdString();
        EXPECT_EQ(w.Label1->text(), kStopped);
        EXPECT_EQ(w.List1->count(), 2);
        EXPECT_TRUE(QFileInfo::exists(out() + QStringLiteral("/a.mp3")));
        w.List1->clear();
    }
}

// A destination that fills up, holding an older file of the output's name, in each queue:
// the user is told which file and why, no success text, the list kept and the older file
// whole. A complete run first makes the queues' success texts their ones to show.
TEST_F(FileQueueTest, EachQueueWritesWhatItsSourceHoldsAndADiskThatFillsUpIsTold) {
    SaveAppSetting(QStringLiteral("Show Encode Message"), CStr(false));
    // Each output is larger than the disk: about 160 KB of MP3, 350 KB of WAV.
    wav("ten.wav", 10.0);
    ASSERT_TRUE(writeMp3Tone(tempDir() + QStringLiteral("/ONE.MP3"), 2.0, 44100, 2, 128));
    const struct {
        QString window, source, output, success;
    } cases[] = {
        {"encode", tempDir() + "/ten.wav", "ten.mp3",
         "The file list has been successfully encoded."},
        {"decode", tempDir() + "/ONE.MP3", "ONE.wav",
         "The file list has been successfully decoded."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.window.toStdString());
        FileQueueForm& w = c.window == "encode"
                               ? static_cast<FileQueueForm&>(Forms::touch<frmEncode>())
                               : Forms::touch<frmDecode>();
        msgBox().reset();
        drop(w, {c.source});
        ASSERT_TRUE(run(w, out()));
        ASSERT_EQ(w.Label1->text(), c.success);
        // What the run wrote holds the source's sound and length.
        const QString made = out() + u'/' + c.output;
        if (c.window == "encode") {
            const Mp3Info mp3 = decodeMp3(made);
            EXPECT_NEAR(seconds(mp3), 10.0, 0.01);
            EXPECT_GT(mp3.rms, 0.01);
        } else {
            EXPECT_EQ(dialogs->calls.last().prompt,
                      QStringLiteral("Select Folder for WAV Output:"));
            const SoundInfo wav = readSoundInfo(made);
            EXPECT_EQ(wav.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
            EXPECT_NEAR(double(wav.frames) / wav.rate, 2.0, 0.01);
        }

        const QString full = tempDir() + QStringLiteral("/full-") + c.window;
        const QString output = full + u'/' + c.output;
        const QByteArray older(10000, 'o');
        const int code = runOnFillingFolder(full, 64 * 1024, [&] {
            if (!writeBytes(output, older)) return 1;
            msgBox().reset();
            drop(w, {c.source});
            if (!run(w, full)) return 2;
            const QStringList told = msgBox().texts();
            if (told.size() != 1 || !told[0].startsWith(QStringLiteral("Unable to write file:  ") +
                                                        output + QStringLiteral("\r\n\r\n")))
                return 3;
            if (w.Label1->text() == c.success || w.List1->count() != 1) return 4;
            if (fileBytes(output) != older || !hiddenFiles(full).isEmpty()) return 5;
            return 0;
        });
        EXPECT_EQ(code, 0);
        w.unload();
    }
}

// The batch converter.
const QString kDone = QStringLiteral("Batch WAV conversion process has successfully completed.");

// Every file of the list in the chosen format, one added during the run too; the caption
// that stays; a source that holds no sound told, a cut one converted as far as it goes,
// and the sources left as they were.
TEST_F(FileQueueTest, TheBatchConvertsWhatEachSourceHoldsOrTellsWhyNot) {
    const QString one = wav("one.wav", 2.0), late = wav("late.wav"), big = wav("big.wav", 30.0);
    const QString two = tempDir() + QStringLiteral("/two.wav");
    ASSERT_TRUE(writeTone(two, 1.5, 48000, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_24));
    frmBatchConvert& w = Forms::touch<frmBatchConvert>();
    drop(w, {big, one, two});
    FakeFormatChooser& chooser = *FakeFormatChooser::latest();
    chooser.script({WaveFormat{WaveFormat::MuLaw, 8000, 1}});
    // The gauge follows the source on the window's timer from each file's start (the
    // first file is long enough to be in work then).
    QObject::connect(w.Chain.get(), &WaveChain::TriggerStarted, &w, [&] { clock().advance(100); });
    dialogs->scriptFolder(out());
    w.ConvertMenu->trigger();
    EXPECT_EQ(dialogs->calls.last().prompt, QStringLiteral("Select Folder for WAV Output:"));
    ASSERT_EQ(chooser.showings.size(), 1);
    EXPECT_EQ(chooser.showings[0].title, QStringLiteral("Select..."));
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Stop Conversion"));
    // The window stays open while a file converts, and the list isn't locked.
    EXPECT_FALSE(w.unload());
    dialogs->scriptFiles({late});
    w.AddMenu->trigger();
    ASSERT_TRUE(waitUntil([&] { return w.List1->count() == 0; }));
    EXPECT_EQ(w.Label1->text(), kDone);
    EXPECT_EQ(msgBox().texts(), QStringList{kDone});
    EXPECT_EQ(w.Gauge->value(), 0);
    for (const auto& [name, frames] : {std::pair{"big.wav", 240000}, std::pair{"one.wav", 16000},
                                       std::pair{"two.wav", 12000}, std::pair{"late.wav", 4000}}) {
        const SoundInfo info = readSoundInfo(out() + u'/' + QLatin1String(name));
        EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_ULAW) << name;
        EXPECT_EQ(info.rate * 10 + info.channels, 80001) << name;
        EXPECT_NEAR(double(info.frames), frames, 1) << name;
    }

    // The caption stays: an empty list answers first, then a new list's first click stops.
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Stop Conversion"));
    w.ConvertMenu->trigger();
    EXPECT_EQ(msgBox().texts().last(),
              QStringLiteral("No files are currently listed in your conversion list.  Please add "
                             "the file(s) you wish to convert before proceeding."));
    const QString empty = tempDir() + QStringLiteral("/empty.wav");
    const QString cut = wav("cut.wav", 2.0);
    ASSERT_TRUE(writeBytes(empty, {}));
    ASSERT_TRUE(truncateFile(cut, 20000));
    drop(w, {cut, empty});
    w.ConvertMenu->trigger();
    EXPECT_EQ(w.ConvertMenu->text(), QStringLiteral("&Start Conversion"));
    EXPECT_EQ(w.Label1->text(), QStringLiteral("WAV batch conversion process has been stopped."));

    msgBox().reset();
    chooser.script({WaveFormat{WaveFormat::Pcm8, 22050, 1}});
    dialogs->scriptFolder(out());
    w.ConvertMenu->trigger();
    ASSERT_TRUE(waitUntil([&] { return !msgBox().shown.isEmpty(); }));
    EXPECT_EQ(msgBox().texts(),
              QStringList{QStringLiteral("An error occurred while attempting to convert the "
                                         "current file (") +
                          empty +
                          QStringLiteral(").  \r\n\r\nExtended Error Information:  The source "
                                         "file can't be read as sound: Format not recognised.")});
    // What the cut file holds, at half the rate.
    EXPECT_NEAR(double(readSoundInfo(out() + QStringLiteral("/cut.wav")).frames),
                (20000 - 44) / 4 / 2, 1);
    EXPECT_EQ(QFileInfo(empty).size(), 0);
    EXPECT_EQ(QFileInfo(cut).size(), 20000);
    w.ConvertMenu->trigger();
    EXPECT_TRUE(w.unload());
}

TEST_F(FileQueueTest, ABatchDestinationThatFillsUpKeepsTheListTheFilesDoneAndTheOlderFile) {
    const QString one = wav("one.wav", 2.0), big = wav("big.wav", 20.0), last = wav("last.wav");
    const QByteArray older(10000, 'o');
    // Room for one.wav (2 s, about 350 KB) but not for big.wav.
    const QString full = tempDir() + QStringLiteral("/full");
    const int code = runOnFillingFolder(full, 1 << 20, [&] {
        if (!writeBytes(full + QStringLiteral("/big.wav"), older)) return 1;
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        drop(w, {one, big, last});
        FakeFormatChooser::latest()->script({WaveFormat{WaveFormat::Pcm16, 44100, 2}});
        if (!run(w, full)) return 2;
        if (msgBox().texts() != QStringList{QStringLiteral("Can't write to file, disk full ?")})
            return 3;
        if (w.List1->count() != 3 || !w.RunFailed) return 4;
        if (w.Label1->text().contains(QStringLiteral("successfully"))) return 5;
        const SoundInfo done = readSoundInfo(full + QStringLiteral("/one.wav"));
        if (!done.ok || done.frames != 2 * 44100) return 6;
        if (fileBytes(full + QStringLiteral("/big.wav")) != older) return 7;
        if (QFileInfo::exists(full + QStringLiteral("/last.wav")) || !hiddenFiles(full).isEmpty())
            return 8;
        return 0;
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
