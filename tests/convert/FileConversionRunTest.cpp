// The three file conversion windows on the real codecs, as a user runs them: WAV to MP3,
// MP3 to WAV and a batch to 8 kHz µ-law mono, also onto a disk that fills up. Results are
// read back with mpg123 and libsndfile.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <QAction>
#include <QLabel>
#include <QListWidget>

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
    // Runs the window's list into `folder` and waits for the run's end: the list empty, the
    // stopped text, or a box told.
    bool run(FileListForm& w, const QString& folder) {
        QDir().mkpath(folder);
        dialogs->scriptFolder(folder);
        w.RunMenu->trigger();
        const bool ended = waitUntil([&] {
            return w.List1->count() == 0 || w.Label1->text().contains("stop") ||
                   !msgBox().shown.isEmpty();
        });
        settle();
        return ended;
    }

    const QString wav1 = tempDir() + QStringLiteral("/one.wav");
    const QString wav2 = tempDir() + QStringLiteral("/two.wav");
};

// The batch writes what a source holds in the chosen format, tells a source that holds no
// sound, and leaves the sources as they were.
TEST_F(FileConversionRunTest, TheBatchConvertsWhatEachSourceHoldsOrTellsWhyNot) {
    const QString empty = tempDir() + QStringLiteral("/empty.wav");
    const QString cut = tempDir() + QStringLiteral("/cut.wav");
    ASSERT_TRUE(writeBytes(empty, {}));
    ASSERT_TRUE(writeTone(cut, 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(cut, 20000));
    const QString done = QStringLiteral("Batch WAV conversion process has successfully completed.");
    const struct {
        QStringList sources;
        WaveFormat format;
        QString message;
        QList<qint64> frames;
    } cases[] = {
        {{wav1, wav2}, {WaveFormat::MuLaw, 8000, 1}, done, {2 * 8000, 8000 * 3 / 2}},
        {{empty},
         {WaveFormat::Pcm8, 22050, 1},
         QStringLiteral("An error occurred while attempting to convert the current file (") +
             empty +
             QStringLiteral(").  \r\n\r\nExtended Error Information:  The source file can't be "
                            "read as sound: Format not recognised."),
         {0}},
        // What the cut file holds, at half the rate.
        {{cut}, {WaveFormat::Pcm8, 22050, 1}, done, {(20000 - 44) / 4 / 2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sources.join(u' ').toStdString());
        msgBox().reset();
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        drop(w, c.sources);
        FakeFormatChooser::latest()->script({c.format});
        ASSERT_TRUE(run(w, out()));
        EXPECT_EQ(msgBox().texts(), QStringList{c.message});
        for (int i = 0; i < c.sources.size(); ++i) {
            const SoundInfo info = readSoundInfo(out() + u'/' + QFileInfo(c.sources[i]).fileName());
            EXPECT_NEAR(double(info.frames), double(c.frames[i]), 1);
            if (c.frames[i] > 0) {
                EXPECT_EQ(info.rate, c.format.sampleRate);
                EXPECT_EQ(info.channels, 1);
            }
        }
        w.ConvertMenu->trigger();
        w.unload();
    }
    EXPECT_EQ(readSoundInfo(out() + QStringLiteral("/one.wav")).format,
              SF_FORMAT_WAV | SF_FORMAT_ULAW);
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
        msgBox().reset();
        drop(w, {c.source});
        if (c.window == "encode") static_cast<frmEncode&>(w).mnuDownMix->trigger();
        ASSERT_TRUE(run(w, out()));
        ASSERT_EQ(w.Label1->text(), c.success);
        // What the run wrote holds the source's sound and length.
        const QString made = out() + u'/' + c.output;
        if (c.window == "encode") {
            const Mp3Info mp3 = decodeMp3(made);
            EXPECT_EQ(mp3.channels, 1);
            EXPECT_NEAR(double(mp3.samples) / mp3.rate, 10.0, 0.01);
            EXPECT_GT(mp3.rms, 0.01);
        } else {
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
        drop(w, {wav1, big, last});
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
