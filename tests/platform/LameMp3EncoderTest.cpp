#include <gtest/gtest.h>
#include <sndfile.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/mp3encoder/LameMp3Encoder.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// One encoder with everything it reported.
struct EncoderUnderTest {
    std::unique_ptr<LameMp3Encoder> encoder = std::make_unique<LameMp3Encoder>();
    QList<qint32> progress;
    int done = 0;

    EncoderUnderTest() {
        QObject::connect(encoder.get(), &Mp3Encoder::EncodeProgress,
                         [this](qint32 v) { progress << v; });
        QObject::connect(encoder.get(), &Mp3Encoder::EncodeDone, [this] { ++done; });
    }
    bool encode(const QString& in, const QString& out, int bitrate = 128000, bool mono = false) {
        encoder->setBitrate(bitrate);
        encoder->setDownMix(mono);
        if (encoder->SetFiles(in, out) != Mp3Encoder::FilesAccepted) return false;
        encoder->Start();
        return encoder->lastError() == 0 && waitUntil([this] { return done > 0; });
    }
};

class LameMp3EncoderTest : public ::testing::Test {
  protected:
    QString path(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

// Seconds of sound an MP3 decodes to.
double seconds(const Mp3Info& mp3) {
    return double(mp3.samples) / double(mp3.rate);
}

}  // namespace

class EncoderBitrates : public LameMp3EncoderTest, public ::testing::WithParamInterface<int> {};

TEST_P(EncoderBitrates, DecodesToTheSourceLengthAtTheChosenRate) {
    const int kbps = GetParam();
    ASSERT_TRUE(writeTone(path("a.wav"), 3.0, 44100, 2));
    EncoderUnderTest t;
    ASSERT_TRUE(t.encode(path("a.wav"), path("a.mp3"), kbps * 1000));
    EXPECT_FALSE(t.encoder->WriteFailed());

    const Mp3Info mp3 = decodeMp3(path("a.mp3"));
    ASSERT_TRUE(mp3.ok);
    EXPECT_EQ(mp3.bitrateKbps, kbps);
    EXPECT_EQ(mp3.channels, 2);
    // Within one MP3 frame of the source's three seconds.
    EXPECT_NEAR(seconds(mp3), 3.0, 1152.0 / mp3.rate);
    EXPECT_NEAR(mp3.rms, 0.5 / std::sqrt(2.0), 0.05);

    // Progress never goes down, stays within the total and ends at it, then one end.
    ASSERT_FALSE(t.progress.isEmpty());
    EXPECT_TRUE(std::is_sorted(t.progress.begin(), t.progress.end()));
    EXPECT_GT(t.progress.first(), 0);
    EXPECT_EQ(t.progress.last(), t.encoder->FrameTotal());
    EXPECT_EQ(t.done, 1);
}

INSTANTIATE_TEST_SUITE_P(Rates, EncoderBitrates, ::testing::Values(128, 64));

TEST_F(LameMp3EncoderTest, DownMixGivesMono) {
    ASSERT_TRUE(writeTone(path("a.wav"), 2.0, 44100, 2));
    EncoderUnderTest t;
    ASSERT_TRUE(t.encode(path("a.wav"), path("a.mp3"), 128000, true));
    const Mp3Info mp3 = decodeMp3(path("a.mp3"));
    ASSERT_TRUE(mp3.ok);
    EXPECT_EQ(mp3.channels, 1);
    EXPECT_NEAR(seconds(mp3), 2.0, 1152.0 / mp3.rate);
}

struct SourceKind {
    const char* name;
    int format;
    int rate;
    int channels;
};

class EncoderSources : public LameMp3EncoderTest,
                       public ::testing::WithParamInterface<SourceKind> {};

// Any WAV libsndfile reads encodes with its sound intact, not only 16-bit PCM; rates
// MPEG audio lacks go through the resampler first.
TEST_P(EncoderSources, EncodeWithTheirSoundIntact) {
    const SourceKind kind = GetParam();
    ASSERT_TRUE(writeTone(path("in.wav"), 2.0, kind.rate, kind.channels, kind.format));
    EncoderUnderTest t;
    ASSERT_TRUE(t.encode(path("in.wav"), path("out.mp3")));
    const Mp3Info mp3 = decodeMp3(path("out.mp3"));
    ASSERT_TRUE(mp3.ok) << kind.name;
    EXPECT_EQ(mp3.channels, kind.channels) << kind.name;
    EXPECT_NEAR(seconds(mp3), 2.0, 2 * 1152.0 / mp3.rate) << kind.name;
    // Each channel's tone is at half scale: wrong scaling or sign shows at once.
    EXPECT_NEAR(mp3.rms, 0.5 / std::sqrt(2.0), 0.06) << kind.name;
}

INSTANTIATE_TEST_SUITE_P(
    Formats, EncoderSources,
    ::testing::Values(SourceKind{"pcm24", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 44100, 2},
                      SourceKind{"float", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 48000, 2},
                      SourceKind{"pcm8", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 22050, 1},
                      SourceKind{"pcm32_96k", SF_FORMAT_WAV | SF_FORMAT_PCM_32, 96000, 2},
                      SourceKind{"ulaw_7k", SF_FORMAT_WAV | SF_FORMAT_ULAW, 7000, 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(LameMp3EncoderTest, RatesLameLacksGoToTheNearestMpegRateAbove) {
    EXPECT_EQ(LameMp3Encoder::lameInputRate(44100), 44100);
    EXPECT_EQ(LameMp3Encoder::lameInputRate(8000), 8000);
    EXPECT_EQ(LameMp3Encoder::lameInputRate(7000), 8000);
    EXPECT_EQ(LameMp3Encoder::lameInputRate(37800), 44100);
    EXPECT_EQ(LameMp3Encoder::lameInputRate(96000), 48000);
}

TEST_F(LameMp3EncoderTest, RefusesWhatIsNotSound) {
    QFile text(path("notes.wav"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write(QByteArray(4000, 'x'));
    text.close();
    EncoderUnderTest t;
    EXPECT_EQ(t.encoder->SetFiles(path("notes.wav"), path("a.mp3")), Mp3Encoder::SourceNotAudio);
    EXPECT_EQ(t.encoder->lastError(), 0);
    EXPECT_EQ(t.encoder->SetFiles(path("missing.wav"), path("a.mp3")), Mp3Encoder::SourceNotAudio);

    // Start without accepted files starts nothing.
    t.encoder->Start();
    EXPECT_EQ(t.encoder->lastError(), 0);
    EXPECT_FALSE(QFileInfo::exists(path("a.mp3")));

    ASSERT_TRUE(writeTone(path("ok.wav"), 0.5, 44100, 2));
    EXPECT_EQ(t.encoder->SetFiles(path("ok.wav"), path("nowhere/a.mp3")),
              Mp3Encoder::OutputNotWritable);
}

TEST_F(LameMp3EncoderTest, ATruncatedWavRaisesTheRefusal) {
    ASSERT_TRUE(writeTone(path("cut.wav"), 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(path("cut.wav"), 100000));
    EncoderUnderTest t;
    EXPECT_EQ(t.encoder->SetFiles(path("cut.wav"), path("cut.mp3")), Mp3Encoder::SourceDamaged);
    EXPECT_EQ(t.encoder->lastError(), RaisedError::ErrRefused);
    EXPECT_FALSE(t.encoder->lastErrorDescription().isEmpty());

    // The next call clears it.
    ASSERT_TRUE(writeTone(path("ok.wav"), 0.5, 44100, 2));
    EXPECT_EQ(t.encoder->SetFiles(path("ok.wav"), path("ok.mp3")), Mp3Encoder::FilesAccepted);
    EXPECT_EQ(t.encoder->lastError(), 0);
}

TEST_F(LameMp3EncoderTest, AFullDiskEndsTheRunWithTheWriteFailure) {
    // SetFiles wants a folder it may write in.
    if (!QFileInfo("/dev").isWritable()) GTEST_SKIP() << "/dev/full needs a writable /dev";
    ASSERT_TRUE(writeTone(path("a.wav"), 1.0, 44100, 2));
    EncoderUnderTest t;
    ASSERT_EQ(t.encoder->SetFiles(path("a.wav"), "/dev/full"), Mp3Encoder::FilesAccepted);
    t.encoder->Start();
    EXPECT_EQ(t.encoder->lastError(), 0);
    ASSERT_TRUE(waitUntil([&] { return t.done > 0; }));
    EXPECT_TRUE(t.encoder->WriteFailed());
    EXPECT_EQ(t.done, 1);
}

TEST_F(LameMp3EncoderTest, AFileSizeLimitStopsTheOutputWhereItWasWritten) {
    ASSERT_TRUE(writeTone(path("a.wav"), 10.0, 44100, 2));
    const QString out = path("a.mp3");
    const qint64 limit = 20000;
    const int code = runWithFileSizeLimit(limit, [&] {
        EncoderUnderTest t;
        if (!t.encode(path("a.wav"), out)) return 2;
        return t.encoder->WriteFailed() && t.done == 1 ? 0 : 1;
    });
    EXPECT_EQ(code, 0);
    EXPECT_GT(QFileInfo(out).size(), 0);
    EXPECT_LE(QFileInfo(out).size(), limit);
}

TEST_F(LameMp3EncoderTest, StopEndsTheRunWithoutAnEndEventAndKeepsTheOutput) {
    ASSERT_TRUE(writeTone(path("long.wav"), 60.0, 44100, 2));
    ASSERT_TRUE(writeTone(path("short.wav"), 0.5, 44100, 2));
    EncoderUnderTest t;
    ASSERT_EQ(t.encoder->SetFiles(path("long.wav"), path("long.mp3")), 0);
    t.encoder->Start();
    ASSERT_TRUE(waitUntil([&] { return !t.progress.isEmpty(); }));
    t.encoder->Stop();
    const qint32 lastBeforeStop = t.progress.last();
    EXPECT_LT(lastBeforeStop, t.encoder->FrameTotal());

    // A following run ends normally, and it is the only end heard.
    ASSERT_TRUE(t.encode(path("short.wav"), path("short.mp3")));
    EXPECT_EQ(t.done, 1);
    // What was written before the stop still plays.
    const Mp3Info partial = decodeMp3(path("long.mp3"));
    EXPECT_TRUE(partial.ok);
    EXPECT_GT(partial.samples, 0);
    EXPECT_LT(seconds(partial), 60.0);

    // Dropping an encoder in the middle of a run neither hangs nor crashes.
    ASSERT_EQ(t.encoder->SetFiles(path("long.wav"), path("again.mp3")), 0);
    t.encoder->Start();
    t.encoder.reset();
}
