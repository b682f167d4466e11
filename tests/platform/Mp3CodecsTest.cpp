// MP3 encoding over LAME and decoding over mpg123, on files the tests make, as the conversion
// windows drive them: whole runs, refused sources and failed writes.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// One codec with everything it reported.
template <typename Codec>
struct Run {
    template <typename Progress, typename Done>
    Run(Progress progressSignal, Done doneSignal) {
        QObject::connect(codec.get(), progressSignal, [this](qint32 v) { progress << v; });
        QObject::connect(codec.get(), doneSignal, [this] { ++done; });
    }
    bool ended() {
        return codec->lastError() == 0 && waitUntil([this] { return done > 0; });
    }
    // Progress never went down and ended at the total, and one end was heard.
    void expectWholeRun() {
        ASSERT_FALSE(progress.isEmpty());
        EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
        EXPECT_GT(progress.first(), 0);
        EXPECT_EQ(progress.last(), codec->FrameTotal());
        EXPECT_EQ(done, 1);
    }
    std::unique_ptr<Codec> codec = std::make_unique<Codec>();
    QList<qint32> progress;
    int done = 0;
};

struct Encoder : Run<LameMp3Encoder> {
    Encoder() : Run(&Mp3Encoder::EncodeProgress, &Mp3Encoder::EncodeDone) {}
    bool encode(const QString& in, const QString& out, int bitrate = 128000) {
        codec->setBitrate(bitrate);
        if (codec->SetFiles(in, out) != Mp3Encoder::FilesAccepted) return false;
        codec->Start();
        return ended();
    }
};

struct Decoder : Run<Mpg123Mp3Decoder> {
    Decoder() : Run(&Mp3Decoder::DecodeProgress, &Mp3Decoder::DecodeDone) {}
    bool decode(const QString& in, const QString& out) {
        if (codec->SetFiles(in, out) != Mp3Decoder::FilesAccepted) return false;
        codec->StartDecode();
        return ended();
    }
};

}  // namespace

// A WAV of any sample format encodes with its sound intact at the chosen bit rate, at the
// MPEG rate nearest above its own (the resampler fills in), and decodes back to a 16-bit WAV
// of its length. Plain 16-bit CD sound and the down-mix are run by the conversion windows.
TEST(Mp3Codecs, AWavEncodesAndDecodesBackWholeAndAFolderThatHasGoneIsAFailedWrite) {
    QTemporaryDir dir;
    const auto path = [&](const QString& name) { return dir.filePath(name); };
    const struct {
        int format, rate, channels, kbps, mp3Rate;
    } cases[] = {{SF_FORMAT_WAV | SF_FORMAT_PCM_32, 96000, 2, 192, 48000},
                 {SF_FORMAT_WAV | SF_FORMAT_ULAW, 7000, 1, 64, 8000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.rate);
        ASSERT_TRUE(writeTone(path("in.wav"), 2.0, c.rate, c.channels, c.format));
        Encoder e;
        ASSERT_TRUE(e.encode(path("in.wav"), path("out.mp3"), c.kbps * 1000));
        EXPECT_FALSE(e.codec->WriteFailed());
        e.expectWholeRun();
        const Mp3Info mp3 = decodeMp3(path("out.mp3"));
        ASSERT_TRUE(mp3.ok);
        EXPECT_EQ(QList<long>({mp3.bitrateKbps, mp3.rate, mp3.channels}),
                  QList<long>({c.kbps, c.mp3Rate, c.channels}));
        EXPECT_NEAR(double(mp3.samples) / mp3.rate, 2.0, 2 * 1152.0 / mp3.rate);
        // Each channel's tone is at half scale: wrong scaling or sign shows at once.
        EXPECT_NEAR(mp3.rms, 0.5 / std::sqrt(2.0), 0.06);

        Decoder d;
        ASSERT_TRUE(d.decode(path("out.mp3"), path("back.wav")));
        EXPECT_FALSE(d.codec->WriteFailed());
        d.expectWholeRun();
        const SoundInfo wav = readSoundInfo(path("back.wav"));
        EXPECT_EQ(QList<long>({wav.format, wav.rate, wav.channels, long(wav.frames)}),
                  QList<long>(
                      {SF_FORMAT_WAV | SF_FORMAT_PCM_16, mp3.rate, c.channels, long(mp3.samples)}));
    }

    // A folder that has gone is a failed write, told with its reason at the run's end (the
    // windows tell refused sources, but cannot reach a folder that takes no file).
    Encoder e;
    ASSERT_TRUE(e.encode(path("in.wav"), path("nowhere/a.mp3"), 64000));
    EXPECT_TRUE(e.codec->WriteFailed());
    EXPECT_EQ(e.codec->WriteErrorDescription(), "No such file or directory");
    Decoder d;
    // A WAV with an MP3's name is no MPEG stream.
    ASSERT_TRUE(writeTone(path("pcm.mp3"), 1.0, 44100, 2));
    EXPECT_EQ(d.codec->SetFiles(path("pcm.mp3"), path("out.wav")), Mp3Decoder::SourceNotMpeg);
    ASSERT_TRUE(d.decode(path("out.mp3"), path("nowhere/out.wav")));
    EXPECT_TRUE(d.codec->WriteFailed());
    EXPECT_EQ(d.codec->WriteErrorDescription(), "No such file or directory");
    // The next run writes, and leaves no part file behind.
    e.done = 0;
    ASSERT_TRUE(e.encode(path("in.wav"), path("ok2.mp3"), 64000));
    EXPECT_FALSE(e.codec->WriteFailed());
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Hidden | QDir::Files).filter(".part").isEmpty());
}
