#include <gtest/gtest.h>
#include <sndfile.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <memory>

#include "platform/mp3decoder/Mpg123Mp3Decoder.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

struct DecoderUnderTest {
    std::unique_ptr<Mpg123Mp3Decoder> decoder = std::make_unique<Mpg123Mp3Decoder>();
    QList<qint32> progress;
    int done = 0;

    DecoderUnderTest() {
        QObject::connect(decoder.get(), &Mp3Decoder::DecodeProgress,
                         [this](qint32 v) { progress << v; });
        QObject::connect(decoder.get(), &Mp3Decoder::DecodeDone, [this] { ++done; });
    }
    bool decode(const QString& in, const QString& out) {
        if (decoder->SetFiles(in, out) != Mp3Decoder::FilesAccepted) return false;
        decoder->StartDecode();
        return decoder->lastError() == 0 && waitUntil([this] { return done > 0; });
    }
};

class Mpg123Mp3DecoderTest : public ::testing::Test {
  protected:
    QString path(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

}  // namespace

struct Stream {
    const char* name;
    int rate;
    int channels;
    int kbps;
    int layer;
};

class DecoderStreams : public Mpg123Mp3DecoderTest, public ::testing::WithParamInterface<Stream> {};

TEST_P(DecoderStreams, WriteA16BitWavOfTheStreamsLengthRateAndChannels) {
    const Stream s = GetParam();
    if (s.layer == 2) {
        if (!writeMp2Tone(path("a.mp3"), 3.0, s.rate, s.channels, s.kbps))
            GTEST_SKIP() << "no layer 2 encoder on this machine";
    } else {
        ASSERT_TRUE(writeMp3Tone(path("a.mp3"), 3.0, s.rate, s.channels, s.kbps));
    }
    const Mp3Info mp3 = decodeMp3(path("a.mp3"));
    ASSERT_TRUE(mp3.ok);
    ASSERT_EQ(mp3.layer, s.layer);

    DecoderUnderTest t;
    ASSERT_TRUE(t.decode(path("a.mp3"), path("a.wav")));
    EXPECT_FALSE(t.decoder->WriteFailed());
    const SoundInfo wav = readSoundInfo(path("a.wav"));
    ASSERT_TRUE(wav.ok);
    EXPECT_EQ(wav.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(wav.rate, s.rate);
    EXPECT_EQ(wav.channels, s.channels);
    // Every sample mpg123 gives, and about the three seconds that went in.
    EXPECT_EQ(wav.frames, mp3.samples);
    EXPECT_NEAR(double(wav.frames) / s.rate, 3.0, 3 * 1152.0 / s.rate);

    ASSERT_FALSE(t.progress.isEmpty());
    EXPECT_TRUE(std::is_sorted(t.progress.begin(), t.progress.end()));
    EXPECT_EQ(t.progress.last(), t.decoder->FrameTotal());
    EXPECT_EQ(t.done, 1);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DecoderStreams,
                         ::testing::Values(Stream{"stereo44", 44100, 2, 128, 3},
                                           Stream{"mono22", 22050, 1, 64, 3},
                                           Stream{"stereo48", 48000, 2, 192, 3},
                                           Stream{"layer2", 48000, 2, 192, 2}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Mpg123Mp3DecoderTest, ASourceWithoutMpegAudioIsRefused) {
    ASSERT_TRUE(writeTone(path("pcm.mp3"), 1.0, 44100, 2));
    ASSERT_TRUE(writeBytes(path("text.mp3"), QByteArray("not a frame of sound\n").repeated(2000)));

    DecoderUnderTest t;
    for (const char* name : {"pcm.mp3", "text.mp3", "missing.mp3"}) {
        EXPECT_EQ(t.decoder->SetFiles(path(name), path("out.wav")), Mp3Decoder::SourceNotMpeg)
            << name;
        EXPECT_EQ(t.decoder->lastError(), 0) << name;
    }
    t.decoder->StartDecode();
    EXPECT_FALSE(QFileInfo::exists(path("out.wav")));

    // A folder that has gone is a failed write, told with its reason at the run's end.
    ASSERT_TRUE(writeMp3Tone(path("ok.mp3"), 0.5, 44100, 2, 128));
    ASSERT_TRUE(t.decode(path("ok.mp3"), path("nowhere/out.wav")));
    EXPECT_TRUE(t.decoder->WriteFailed());
    EXPECT_EQ(t.decoder->WriteErrorDescription(), QStringLiteral("No such file or directory"));
}

TEST_F(Mpg123Mp3DecoderTest, StopEndsTheRunWithoutAnEndEvent) {
    ASSERT_TRUE(writeMp3Tone(path("long.mp3"), 60.0, 44100, 2, 128));
    ASSERT_TRUE(writeMp3Tone(path("short.mp3"), 0.5, 44100, 2, 128));
    DecoderUnderTest t;
    ASSERT_EQ(t.decoder->SetFiles(path("long.mp3"), path("long.wav")), 0);
    t.decoder->StartDecode();
    ASSERT_TRUE(waitUntil([&] { return !t.progress.isEmpty(); }));
    t.decoder->StopDecode();
    EXPECT_LT(t.progress.last(), t.decoder->FrameTotal());

    ASSERT_TRUE(t.decode(path("short.mp3"), path("short.wav")));
    EXPECT_EQ(t.done, 1);
    const qint64 partial = QFileInfo(path("long.wav")).size();
    EXPECT_GT(partial, 0);
    EXPECT_LT(partial, 60LL * 44100 * 4);

    ASSERT_EQ(t.decoder->SetFiles(path("long.mp3"), path("again.wav")), 0);
    t.decoder->StartDecode();
    t.decoder.reset();
}
