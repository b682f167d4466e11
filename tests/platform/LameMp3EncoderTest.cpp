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

struct EncodeCase {
    const char* name;
    int format;  // libsndfile code of the source
    int rate;
    int channels;
    int kbps;
    bool downMix;
    int slackFrames;  // MP3 frames the length may be off, more where resampled
};

class EncoderCases : public LameMp3EncoderTest, public ::testing::WithParamInterface<EncodeCase> {};

// Any WAV libsndfile reads encodes with its sound intact at the chosen rate, not only
// 16-bit PCM; rates MPEG audio lacks go through the resampler first.
TEST_P(EncoderCases, DecodeToTheSourceLengthAndLoudness) {
    const EncodeCase c = GetParam();
    ASSERT_TRUE(writeTone(path("in.wav"), 2.0, c.rate, c.channels, c.format));
    EncoderUnderTest t;
    ASSERT_TRUE(t.encode(path("in.wav"), path("out.mp3"), c.kbps * 1000, c.downMix));
    EXPECT_FALSE(t.encoder->WriteFailed());

    const Mp3Info mp3 = decodeMp3(path("out.mp3"));
    ASSERT_TRUE(mp3.ok);
    EXPECT_EQ(mp3.bitrateKbps, c.kbps);
    EXPECT_EQ(mp3.channels, c.downMix ? 1 : c.channels);
    EXPECT_NEAR(seconds(mp3), 2.0, c.slackFrames * 1152.0 / mp3.rate);
    // Each channel's tone is at half scale: wrong scaling or sign shows at once.
    if (!c.downMix) {
        EXPECT_NEAR(mp3.rms, 0.5 / std::sqrt(2.0), 0.06);
    }

    // Progress never goes down, stays within the total and ends at it, then one end.
    ASSERT_FALSE(t.progress.isEmpty());
    EXPECT_TRUE(std::is_sorted(t.progress.begin(), t.progress.end()));
    EXPECT_GT(t.progress.first(), 0);
    EXPECT_EQ(t.progress.last(), t.encoder->FrameTotal());
    EXPECT_EQ(t.done, 1);
}

constexpr int Pcm16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
INSTANTIATE_TEST_SUITE_P(
    Sources, EncoderCases,
    ::testing::Values(
        EncodeCase{"pcm16_128k", Pcm16, 44100, 2, 128, false, 1},
        EncodeCase{"pcm16_64k", Pcm16, 44100, 2, 64, false, 1},
        EncodeCase{"downmix", Pcm16, 44100, 2, 128, true, 1},
        EncodeCase{"pcm24", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 44100, 2, 128, false, 2},
        EncodeCase{"float", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 48000, 2, 128, false, 2},
        EncodeCase{"pcm8", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 22050, 1, 128, false, 2},
        EncodeCase{"pcm32_96k", SF_FORMAT_WAV | SF_FORMAT_PCM_32, 96000, 2, 128, false, 2},
        EncodeCase{"ulaw_7k", SF_FORMAT_WAV | SF_FORMAT_ULAW, 7000, 1, 64, false, 2}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(LameMp3EncoderTest, RefusesWhatIsNotSound) {
    ASSERT_TRUE(writeBytes(path("notes.wav"), QByteArray(4000, 'x')));
    EncoderUnderTest t;
    ASSERT_TRUE(writeBytes(path("empty.wav"), {}));
    for (const char* name : {"notes.wav", "missing.wav", "empty.wav"}) {
        EXPECT_EQ(t.encoder->SetFiles(path(name), path("a.mp3")), Mp3Encoder::SourceNotAudio)
            << name;
        EXPECT_EQ(t.encoder->lastError(), 0) << name;
    }

    // Start without accepted files starts nothing.
    t.encoder->Start();
    EXPECT_EQ(t.encoder->lastError(), 0);
    EXPECT_FALSE(QFileInfo::exists(path("a.mp3")));

    ASSERT_TRUE(writeTone(path("cut.wav"), 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(path("cut.wav"), 100000));
    EXPECT_EQ(t.encoder->SetFiles(path("cut.wav"), path("cut.mp3")), Mp3Encoder::SourceDamaged);

    // A folder that has gone is a failed write, told with its reason at the run's end.
    ASSERT_TRUE(writeTone(path("ok.wav"), 0.5, 44100, 2));
    ASSERT_TRUE(t.encode(path("ok.wav"), path("nowhere/a.mp3")));
    EXPECT_TRUE(t.encoder->WriteFailed());
    EXPECT_EQ(t.encoder->WriteErrorDescription(), QStringLiteral("No such file or directory"));
    t.done = 0;
    ASSERT_TRUE(t.encode(path("ok.wav"), path("ok.mp3")));
    EXPECT_FALSE(t.encoder->WriteFailed());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Hidden | QDir::Files, QDir::Name).filter(".part"),
              QStringList());
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
