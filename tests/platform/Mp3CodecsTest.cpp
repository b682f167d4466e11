// MP3 encoding over LAME and decoding over mpg123, on files the tests make, as the conversion
// windows drive them: whole runs, refused sources, failed writes and stops.
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
    bool encode(const QString& in, const QString& out, int bitrate = 128000, bool mono = false) {
        codec->setBitrate(bitrate);
        codec->setDownMix(mono);
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

class Mp3CodecsTest : public ::testing::Test {
  protected:
    QString path(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

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

class EncoderCases : public Mp3CodecsTest, public ::testing::WithParamInterface<EncodeCase> {};

// Any WAV libsndfile reads encodes with its sound intact at the chosen rate, not only
// 16-bit PCM; rates MPEG audio lacks go through the resampler first.
TEST_P(EncoderCases, DecodeToTheSourceLengthAndLoudness) {
    const EncodeCase c = GetParam();
    ASSERT_TRUE(writeTone(path("in.wav"), 2.0, c.rate, c.channels, c.format));
    Encoder t;
    ASSERT_TRUE(t.encode(path("in.wav"), path("out.mp3"), c.kbps * 1000, c.downMix));
    EXPECT_FALSE(t.codec->WriteFailed());
    const Mp3Info mp3 = decodeMp3(path("out.mp3"));
    ASSERT_TRUE(mp3.ok);
    EXPECT_EQ(mp3.bitrateKbps, c.kbps);
    EXPECT_EQ(mp3.channels, c.downMix ? 1 : c.channels);
    EXPECT_NEAR(seconds(mp3), 2.0, c.slackFrames * 1152.0 / mp3.rate);
    // Each channel's tone is at half scale: wrong scaling or sign shows at once.
    if (!c.downMix) {
        EXPECT_NEAR(mp3.rms, 0.5 / std::sqrt(2.0), 0.06);
    }
    t.expectWholeRun();
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

struct Stream {
    const char* name;
    int rate;
    int channels;
    int kbps;
    int layer;
};

class DecoderStreams : public Mp3CodecsTest, public ::testing::WithParamInterface<Stream> {};

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
    Decoder t;
    ASSERT_TRUE(t.decode(path("a.mp3"), path("a.wav")));
    EXPECT_FALSE(t.codec->WriteFailed());
    const SoundInfo wav = readSoundInfo(path("a.wav"));
    ASSERT_TRUE(wav.ok);
    EXPECT_EQ(wav.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(wav.rate, s.rate);
    EXPECT_EQ(wav.channels, s.channels);
    // Every sample mpg123 gives, and about the three seconds that went in.
    EXPECT_EQ(wav.frames, mp3.samples);
    EXPECT_NEAR(double(wav.frames) / s.rate, 3.0, 3 * 1152.0 / s.rate);
    t.expectWholeRun();
}

INSTANTIATE_TEST_SUITE_P(Kinds, DecoderStreams,
                         ::testing::Values(Stream{"stereo44", 44100, 2, 128, 3},
                                           Stream{"mono22", 22050, 1, 64, 3},
                                           Stream{"stereo48", 48000, 2, 192, 3},
                                           Stream{"layer2", 48000, 2, 192, 2}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Mp3CodecsTest, WhatIsNoSoundIsRefusedAndAFolderThatHasGoneIsAFailedWrite) {
    ASSERT_TRUE(writeBytes(path("notes.wav"), QByteArray(4000, 'x')));
    ASSERT_TRUE(writeBytes(path("empty.wav"), {}));
    ASSERT_TRUE(writeTone(path("pcm.mp3"), 1.0, 44100, 2));
    ASSERT_TRUE(writeBytes(path("text.mp3"), QByteArray("not a frame of sound\n").repeated(2000)));
    Encoder e;
    Decoder d;
    for (const char* name : {"notes.wav", "missing.wav", "empty.wav"}) {
        EXPECT_EQ(e.codec->SetFiles(path(name), path("a.mp3")), Mp3Encoder::SourceNotAudio) << name;
        EXPECT_EQ(e.codec->lastError(), 0) << name;
    }
    for (const char* name : {"pcm.mp3", "text.mp3", "missing.mp3"}) {
        EXPECT_EQ(d.codec->SetFiles(path(name), path("out.wav")), Mp3Decoder::SourceNotMpeg)
            << name;
        EXPECT_EQ(d.codec->lastError(), 0) << name;
    }
    // Start without accepted files starts nothing.
    e.codec->Start();
    d.codec->StartDecode();
    EXPECT_EQ(e.codec->lastError(), 0);
    EXPECT_FALSE(QFileInfo::exists(path("a.mp3")));
    EXPECT_FALSE(QFileInfo::exists(path("out.wav")));
    ASSERT_TRUE(writeTone(path("cut.wav"), 2.0, 44100, 2));
    ASSERT_TRUE(truncateFile(path("cut.wav"), 100000));
    EXPECT_EQ(e.codec->SetFiles(path("cut.wav"), path("cut.mp3")), Mp3Encoder::SourceDamaged);

    // A folder that has gone is a failed write, told with its reason at the run's end.
    ASSERT_TRUE(writeTone(path("ok.wav"), 0.5, 44100, 2));
    ASSERT_TRUE(e.encode(path("ok.wav"), path("nowhere/a.mp3")));
    EXPECT_TRUE(e.codec->WriteFailed());
    EXPECT_EQ(e.codec->WriteErrorDescription(), "No such file or directory");
    ASSERT_TRUE(writeMp3Tone(path("ok.mp3"), 0.5, 44100, 2, 128));
    ASSERT_TRUE(d.decode(path("ok.mp3"), path("nowhere/out.wav")));
    EXPECT_TRUE(d.codec->WriteFailed());
    EXPECT_EQ(d.codec->WriteErrorDescription(), "No such file or directory");
    // The next run writes, and leaves no part file behind.
    e.done = 0;
    ASSERT_TRUE(e.encode(path("ok.wav"), path("ok2.mp3")));
    EXPECT_FALSE(e.codec->WriteFailed());
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Hidden | QDir::Files).filter(".part").isEmpty());
}

TEST_F(Mp3CodecsTest, AStopEndsTheRunWithoutAnEndAndKeepsWhatWasWritten) {
    ASSERT_TRUE(writeTone(path("long.wav"), 60.0, 44100, 2));
    ASSERT_TRUE(writeTone(path("short.wav"), 0.5, 44100, 2));
    ASSERT_TRUE(writeMp3Tone(path("long.mp3"), 60.0, 44100, 2, 128));
    ASSERT_TRUE(writeMp3Tone(path("short.mp3"), 0.5, 44100, 2, 128));
    Encoder e;
    ASSERT_EQ(e.codec->SetFiles(path("long.wav"), path("out.mp3")), 0);
    e.codec->Start();
    ASSERT_TRUE(waitUntil([&] { return !e.progress.isEmpty(); }));
    e.codec->Stop();
    EXPECT_LT(e.progress.last(), e.codec->FrameTotal());
    Decoder d;
    ASSERT_EQ(d.codec->SetFiles(path("long.mp3"), path("out.wav")), 0);
    d.codec->StartDecode();
    ASSERT_TRUE(waitUntil([&] { return !d.progress.isEmpty(); }));
    d.codec->StopDecode();
    EXPECT_LT(d.progress.last(), d.codec->FrameTotal());

    // A following run ends normally, and it is the only end heard.
    ASSERT_TRUE(e.encode(path("short.wav"), path("short2.mp3")));
    ASSERT_TRUE(d.decode(path("short.mp3"), path("short2.wav")));
    EXPECT_EQ(e.done, 1);
    EXPECT_EQ(d.done, 1);
    // What was written before the stop still plays.
    const Mp3Info partial = decodeMp3(path("out.mp3"));
    EXPECT_TRUE(partial.ok);
    EXPECT_GT(partial.samples, 0);
    EXPECT_LT(seconds(partial), 60.0);
    EXPECT_GT(QFileInfo(path("out.wav")).size(), 0);
    EXPECT_LT(QFileInfo(path("out.wav")).size(), 60LL * 44100 * 4);

    // Dropping a codec in the middle of a run neither hangs nor crashes.
    ASSERT_EQ(e.codec->SetFiles(path("long.wav"), path("again.mp3")), 0);
    e.codec->Start();
    e.codec.reset();
    ASSERT_EQ(d.codec->SetFiles(path("long.mp3"), path("again.wav")), 0);
    d.codec->StartDecode();
    d.codec.reset();
}
