// The three file conversion windows on the real codecs, as a user runs them: WAV files
// to MP3, those MP3 files back to WAV, and a batch to 8 kHz µ-law mono. Results are read
// back with mpg123 and libsndfile.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <QAction>
#include <QLabel>
#include <QListWidget>

#include "convert/BitrateMenu.h"
#include "convert/FileConversionFixture.h"
#include "convert/FileQueueForm.h"
#include "convert/frmBatchConvert.h"
#include "convert/frmDecode.h"
#include "convert/frmEncode.h"
#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/wavechain/SndfileWaveChain.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class FileConversionRunTest : public FileConversionFixture {
  protected:
    void SetUp() override {
        FileConversionFixture::SetUp();
        Components::provideFactory<Mp3Encoder>([] { return std::make_unique<LameMp3Encoder>(); });
        Components::provideFactory<Mp3Decoder>([] { return std::make_unique<Mpg123Mp3Decoder>(); });
        Components::provideFactory<WaveChain>([] { return std::make_unique<SndfileWaveChain>(); });
        // Two sources: CD quality, and 24-bit at 48 kHz, which libsndfile reads alike.
        ASSERT_TRUE(writeTone(wav1, 2.0, 44100, 2));
        ASSERT_TRUE(writeTone(wav2, 1.5, 48000, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_24));
    }
    // Runs the window's list into `folder` and waits for the run's end.
    static bool run(FileListForm& w, FakeFileDialogs& dialogs, const QString& folder) {
        QDir().mkpath(folder);
        dialogs.scriptFolder(folder);
        w.RunMenu->trigger();
        return waitUntil(
            [&] { return w.List1->count() == 0 || w.Label1->text().contains("stop"); });
    }

    const QString wav1 = tempDir() + QStringLiteral("/one.wav");
    const QString wav2 = tempDir() + QStringLiteral("/two.wav");
};

TEST_F(FileConversionRunTest, WavToMp3AndBackKeepLengthRateAndChannels) {
    frmEncode& enc = Forms::touch<frmEncode>();
    enc.Bitrates->mnuBitrate[1]->trigger();  // 64 kbit/s
    enc.mnuDownMix->trigger();
    enc.Process_DROPFILES({wav1, wav2});
    ASSERT_TRUE(run(enc, *dialogs, out()));
    EXPECT_EQ(enc.Label1->text(), QStringLiteral("The file list has been successfully encoded."));

    const Mp3Info one = decodeMp3(out() + QStringLiteral("/one.mp3"));
    const Mp3Info two = decodeMp3(out() + QStringLiteral("/two.mp3"));
    ASSERT_TRUE(one.ok && two.ok);
    EXPECT_EQ(one.bitrateKbps, 64);
    EXPECT_EQ(two.bitrateKbps, 64);
    EXPECT_EQ(one.channels, 1);
    EXPECT_EQ(two.channels, 1);
    EXPECT_NEAR(double(one.samples) / one.rate, 2.0, 0.01);
    EXPECT_NEAR(double(two.samples) / two.rate, 1.5, 0.01);
    EXPECT_GT(one.rms, 0.01);

    frmDecode& dec = Forms::touch<frmDecode>();
    dec.Process_DROPFILES({out()});
    ASSERT_EQ(dec.List1->count(), 2);
    const QString back = tempDir() + QStringLiteral("/back");
    ASSERT_TRUE(run(dec, *dialogs, back));
    EXPECT_EQ(dec.Label1->text(), QStringLiteral("The file list has been successfully decoded."));
    const SoundInfo a = readSoundInfo(back + QStringLiteral("/one.wav"));
    const SoundInfo b = readSoundInfo(back + QStringLiteral("/two.wav"));
    ASSERT_TRUE(a.ok && b.ok);
    EXPECT_EQ(a.channels, 1);
    EXPECT_EQ(a.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_NEAR(double(a.frames) / a.rate, 2.0, 0.01);
    EXPECT_NEAR(double(b.frames) / b.rate, 1.5, 0.01);
}

TEST_F(FileConversionRunTest, ASourceTheCodecRefusesEndsTheRunThereWithTheStoppedText) {
    const QString cut = tempDir() + QStringLiteral("/cut.wav");
    ASSERT_TRUE(writeTone(cut, 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(cut, 20000));
    const QString text = tempDir() + QStringLiteral("/text.mp3");
    ASSERT_TRUE(writeBytes(text, QByteArray(4000, 'x')));
    const QString emptyWav = tempDir() + QStringLiteral("/empty.wav");
    ASSERT_TRUE(writeBytes(emptyWav, {}));

    for (const QString& refused : {cut, emptyWav}) {
        SCOPED_TRACE(refused.toStdString());
        QFile::remove(out() + QStringLiteral("/one.mp3"));
        frmEncode& enc = Forms::touch<frmEncode>();
        msgBox().reset();
        enc.Process_DROPFILES({wav1, refused, wav2});
        ASSERT_TRUE(run(enc, *dialogs, out()));
        EXPECT_EQ(enc.Label1->text(), QStringLiteral("Encode process has been stopped."));
        EXPECT_TRUE(msgBox().texts().isEmpty());
        EXPECT_EQ(enc.List1->count(), 3);
        EXPECT_TRUE(decodeMp3(out() + QStringLiteral("/one.mp3")).ok);
        EXPECT_FALSE(QFileInfo::exists(out() + QStringLiteral("/two.mp3")));
        enc.unload();
    }

    frmDecode& dec = Forms::touch<frmDecode>();
    const QString back = tempDir() + QStringLiteral("/back");
    dec.Process_DROPFILES({out() + QStringLiteral("/one.mp3"), text});
    ASSERT_TRUE(run(dec, *dialogs, back));
    EXPECT_EQ(dec.Label1->text(), QStringLiteral("Decode process has been stopped."));
    EXPECT_TRUE(readSoundInfo(back + QStringLiteral("/one.wav")).ok);
    EXPECT_EQ(QDir(back).entryList(QDir::Files | QDir::Hidden), QStringList{"one.wav"});
}

TEST_F(FileConversionRunTest, TheBatchWritesMuLawMonoCopies) {
    frmBatchConvert& w = Forms::touch<frmBatchConvert>();
    w.Process_DROPFILES({wav1, wav2});
    FakeFormatChooser::latest()->script({WaveFormat{WaveFormat::MuLaw, 8000, 1}});
    ASSERT_TRUE(run(w, *dialogs, out()));
    EXPECT_EQ(
        msgBox().texts(),
        QStringList{QStringLiteral("Batch WAV conversion process has successfully completed.")});
    for (const auto& [name, seconds] : {std::pair{"/one.wav", 2.0}, std::pair{"/two.wav", 1.5}}) {
        const SoundInfo info = readSoundInfo(out() + QLatin1String(name));
        ASSERT_TRUE(info.ok) << name;
        EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_ULAW);
        EXPECT_EQ(info.rate, 8000);
        EXPECT_EQ(info.channels, 1);
        EXPECT_NEAR(double(info.frames) / 8000, seconds, 0.01);
    }
}

TEST_F(FileConversionRunTest, TheBatchTellsAnEmptySourceConvertsWhatACutOneHoldsAndKeepsBoth) {
    const QString empty = tempDir() + QStringLiteral("/empty.wav");
    const QString cut = tempDir() + QStringLiteral("/cut.wav");
    ASSERT_TRUE(writeBytes(empty, {}));
    ASSERT_TRUE(writeTone(cut, 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(cut, 20000));
    const struct {
        QString source, message;
        qint64 frames;
    } cases[] = {
        {empty,
         QStringLiteral("An error occurred while attempting to convert the current file (") +
             empty +
             QStringLiteral(").  \r\n\r\nExtended Error Information:  The source file can't be "
                            "read as sound: Format not recognised."),
         0},
        // What the cut file holds, at half the rate.
        {cut, QStringLiteral("Batch WAV conversion process has successfully completed."),
         (20000 - 44) / 4 / 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.source.toStdString());
        msgBox().reset();
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        w.Process_DROPFILES({c.source});
        FakeFormatChooser::latest()->script({WaveFormat{WaveFormat::Pcm8, 22050, 1}});
        dialogs->scriptFolder(out());
        w.ConvertMenu->trigger();
        ASSERT_TRUE(waitUntil([&] { return !msgBox().shown.isEmpty(); }));
        settle();
        EXPECT_EQ(msgBox().texts(), QStringList{c.message});
        const SoundInfo info = readSoundInfo(out() + u'/' + QFileInfo(c.source).fileName());
        EXPECT_NEAR(double(info.frames), double(c.frames), 1);
        w.ConvertMenu->trigger();
        w.unload();
    }
    EXPECT_EQ(QFileInfo(empty).size(), 0);
    EXPECT_EQ(QFileInfo(cut).size(), 20000);
}

// A destination that fills up, holding an older file of the output's name, in each window:
// the user is told which file and why, no success text, the list kept and the older file
// whole. A complete run first makes the queues' success texts their ones to show.
TEST_F(FileConversionRunTest, AQueueDestinationThatFillsUpIsToldAndKeepsTheOlderFile) {
    // Each output is larger than the disk: about 160 KB of MP3, 350 KB of WAV.
    ASSERT_TRUE(writeTone(tempDir() + QStringLiteral("/ten.wav"), 10.0, 44100, 2));
    ASSERT_TRUE(writeMp3Tone(tempDir() + QStringLiteral("/one.mp3"), 2.0, 44100, 2, 128));
    const struct {
        QString window, source, output, success;
    } cases[] = {
        {"encode", tempDir() + "/ten.wav", "ten.mp3",
         "The file list has been successfully encoded."},
        {"decode", tempDir() + "/one.mp3", "one.wav",
         "The file list has been successfully decoded."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.window.toStdString());
        FileQueueForm& w = c.window == "encode"
                               ? static_cast<FileQueueForm&>(Forms::touch<frmEncode>())
                               : Forms::touch<frmDecode>();
        w.Process_DROPFILES({c.source});
        ASSERT_TRUE(run(w, *dialogs, out()));
        ASSERT_EQ(w.Label1->text(), c.success);

        const QString full = tempDir() + QStringLiteral("/full-") + c.window;
        const QString output = full + u'/' + c.output;
        const QByteArray older(10000, 'o');
        const int code = runOnFillingFolder(full, 64 * 1024, [&] {
            if (!writeBytes(output, older)) return 1;
            msgBox().reset();
            w.Process_DROPFILES({c.source});
            if (!run(w, *dialogs, full)) return 2;
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

TEST_F(FileConversionRunTest, ABatchDestinationThatFillsUpKeepsTheListTheFilesDoneAndTheOlderFile) {
    const QString big = tempDir() + QStringLiteral("/big.wav");
    ASSERT_TRUE(writeTone(big, 20.0, 44100, 2));
    const QString last = tempDir() + QStringLiteral("/last.wav");
    ASSERT_TRUE(writeTone(last, 0.5, 44100, 2));
    const QByteArray older(10000, 'o');
    // Room for one.wav (2 s, about 350 KB) but not for big.wav.
    const QString full = tempDir() + QStringLiteral("/full");
    const int code = runOnFillingFolder(full, 1 << 20, [&] {
        if (!writeBytes(full + QStringLiteral("/big.wav"), older)) return 1;
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        w.Process_DROPFILES({wav1, big, last});
        FakeFormatChooser::latest()->script({WaveFormat{WaveFormat::Pcm16, 44100, 2}});
        dialogs->scriptFolder(full);
        w.ConvertMenu->trigger();
        if (!waitUntil([&] { return !msgBox().shown.isEmpty(); })) return 2;
        settle();
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
