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

TEST_F(FileConversionRunTest, ADamagedSourceIsToldAndTheQueueGoesOn) {
    const QString cut = tempDir() + QStringLiteral("/cut.wav");
    ASSERT_TRUE(writeTone(cut, 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(cut, 20000));
    const QString text = tempDir() + QStringLiteral("/text.mp3");
    ASSERT_TRUE(writeBytes(text, QByteArray(4000, 'x')));
    const QString emptyWav = tempDir() + QStringLiteral("/empty.wav");
    const QString emptyMp3 = tempDir() + QStringLiteral("/empty.mp3");
    ASSERT_TRUE(writeBytes(emptyWav, {}) && writeBytes(emptyMp3, {}));

    frmEncode& enc = Forms::touch<frmEncode>();
    msgBox().reset();
    enc.Process_DROPFILES({cut, emptyWav, wav1});
    ASSERT_TRUE(run(enc, *dialogs, out()));
    EXPECT_EQ(msgBox().texts(),
              QStringList(2, QStringLiteral("An error occurred while attempting to encode file: "
                                            "Invalid, missing, or inappropriate source audio "
                                            "file.")));
    EXPECT_TRUE(decodeMp3(out() + QStringLiteral("/one.mp3")).ok);

    frmDecode& dec = Forms::touch<frmDecode>();
    msgBox().reset();
    dec.Process_DROPFILES({text, emptyMp3, out() + QStringLiteral("/one.mp3")});
    ASSERT_TRUE(run(dec, *dialogs, out()));
    EXPECT_EQ(msgBox().texts(),
              QStringList(2, QStringLiteral("An error occurred while attempting to decode file: "
                                            "Invalid, missing, or inappropriate source audio "
                                            "file.")));
    EXPECT_TRUE(readSoundInfo(out() + QStringLiteral("/one.wav")).ok);
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

TEST_F(FileConversionRunTest, ABatchDestinationThatFillsUpKeepsTheListAndTheFilesDone) {
    const QString big = tempDir() + QStringLiteral("/big.wav");
    ASSERT_TRUE(writeTone(big, 20.0, 44100, 2));
    const QString last = tempDir() + QStringLiteral("/last.wav");
    ASSERT_TRUE(writeTone(last, 0.5, 44100, 2));
    // Room for one.wav (2 s, about 350 KB) but not for big.wav.
    const qint64 limit = 1 << 20;
    const int code = runWithFileSizeLimit(limit, [&] {
        frmBatchConvert& w = Forms::touch<frmBatchConvert>();
        w.Process_DROPFILES({wav1, big, last});
        FakeFormatChooser::latest()->script({WaveFormat{WaveFormat::Pcm16, 44100, 2}});
        dialogs->scriptFolder(out());
        w.ConvertMenu->trigger();
        if (!waitUntil([&] { return !msgBox().shown.isEmpty(); })) return 2;
        settle();
        if (msgBox().texts() != QStringList{QStringLiteral("Can't write to file, disk full ?")})
            return 3;
        if (w.List1->count() != 3 || !w.RunFailed) return 4;
        if (w.Label1->text().contains(QStringLiteral("successfully"))) return 5;
        return 0;
    });
    EXPECT_EQ(code, 0);
    const SoundInfo done = readSoundInfo(out() + QStringLiteral("/one.wav"));
    EXPECT_TRUE(done.ok);
    EXPECT_EQ(done.frames, 2 * 44100);
    EXPECT_LE(QFileInfo(out() + QStringLiteral("/big.wav")).size(), limit);
    EXPECT_FALSE(QFileInfo::exists(out() + QStringLiteral("/last.wav")));
}

}  // namespace
