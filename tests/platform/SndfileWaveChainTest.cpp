#include <gtest/gtest.h>
#include <sndfile.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <memory>

#include "platform/wavechain/SndfileWaveChain.h"
#include "support/AudioFixtures.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

// A chain and the events it raised, in order.
struct ChainUnderTest {
    std::unique_ptr<SndfileWaveChain> chain = std::make_unique<SndfileWaveChain>();
    QStringList events;
    // State() as the destination's error found it.
    int stateAtError = -1;

    ChainUnderTest() {
        auto* c = chain.get();
        QObject::connect(c, &WaveChain::TriggerStarted, [this] { events << "started"; });
        QObject::connect(c, &WaveChain::TriggerDataEnd, [this] { events << "end"; });
        QObject::connect(c, &WaveChain::TriggerStopped, [this] { events << "stopped"; });
        QObject::connect(c, &WaveChain::DstFileError, [this] {
            events << "error";
            stateAtError = chain->State();
        });
    }
    void start(const QString& in, const QString& out, const WaveFormat& format) {
        chain->setSrcFileName(in);
        chain->PrepareOutput(out);
        chain->setDstFileName(out);
        chain->setTargetFormat(format);
        chain->Start();
    }
    bool waitFor(const QString& event) {
        return waitUntil([&] { return events.contains(event); });
    }
    // The whole run as the batch window drives it: stop at the end of the data.
    bool convert(const QString& in, const QString& out, const WaveFormat& format) {
        events.clear();
        start(in, out, format);
        if (chain->lastError() != 0 || !waitFor("end")) return false;
        chain->Stop();
        return waitFor("stopped");
    }
};

class SndfileWaveChainTest : public ::testing::Test {
  protected:
    QString path(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

}  // namespace

// The encodings of the format dialog are written as chosen, with the rate and layout: floats,
// a block codec and a mono-only one (whole samples are run by the conversion windows).
TEST_F(SndfileWaveChainTest, EncodingsAreWrittenAsChosen) {
    ASSERT_TRUE(writeTone(path("in.wav"), 1.0, 48000, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT));
    for (const WaveFormat& format :
         {WaveFormat(WaveFormat::Float32, 22050, 2), WaveFormat(WaveFormat::MsAdpcm, 22050, 2),
          WaveFormat(WaveFormat::Gsm610, 22050, 1)}) {
        SCOPED_TRACE(format.toSettingsText().toStdString());
        ChainUnderTest t;
        ASSERT_TRUE(t.convert(path("in.wav"), path("out.wav"), format));
        EXPECT_EQ(t.events, QStringList({"started", "end", "stopped"}));
        EXPECT_EQ(t.chain->SrcPosition(), 48000);
        EXPECT_EQ(t.chain->SrcLength(), 48000);
        const SoundInfo out = readSoundInfo(path("out.wav"));
        EXPECT_EQ(QList<int>({out.format, out.rate, out.channels}),
                  QList<int>({format.sndfileFormat(), 22050, format.channels}));
        // Block codecs round the length up to whole blocks.
        EXPECT_NEAR(out.frames, 22050, 1100);
    }
}

TEST_F(SndfileWaveChainTest, ASourceConvertedOntoItselfIsReplacedOnlyWhenComplete) {
    ASSERT_TRUE(writeTone(path("a.wav"), 2.0, 44100, 2));
    ChainUnderTest t;
    ASSERT_TRUE(t.convert(path("a.wav"), path("a.wav"), WaveFormat(WaveFormat::ALaw, 8000, 1)));
    SoundInfo out = readSoundInfo(path("a.wav"));
    EXPECT_EQ(out.format, SF_FORMAT_WAV | SF_FORMAT_ALAW);
    EXPECT_NEAR(out.frames, 2 * 8000, 2);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList({"a.wav"}));

    // A stopped run onto itself leaves the source as it was, and nothing beside it.
    ASSERT_TRUE(writeTone(path("b.wav"), 60.0, 44100, 2));
    t.events.clear();
    t.start(path("b.wav"), path("b.wav"), WaveFormat(WaveFormat::Pcm8, 8000, 1));
    ASSERT_TRUE(waitUntil([&] { return t.chain->SrcPosition() > 0; }));
    t.chain->Stop();
    EXPECT_EQ(t.chain->State(), 0);
    ASSERT_TRUE(t.waitFor("stopped"));
    EXPECT_FALSE(t.events.contains("end"));
    out = readSoundInfo(path("b.wav"));
    EXPECT_EQ(out.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(out.frames, 60 * 44100);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList({"a.wav", "b.wav"}));
}

TEST_F(SndfileWaveChainTest, StartRefusesWhatItCannotDoAndAFailedWriteEndsWithoutTheEndOfData) {
    ChainUnderTest t;
    t.start(path("missing.wav"), path("out.wav"), WaveFormat(WaveFormat::Pcm16, 44100, 2));
    EXPECT_EQ(t.chain->lastError(), RaisedError::ErrRefused);
    EXPECT_FALSE(t.chain->lastErrorDescription().isEmpty());
    ASSERT_TRUE(writeTone(path("a.wav"), 1.0, 44100, 2));
    t.start(path("a.wav"), path("out.wav"), WaveFormat(WaveFormat::Gsm610, 8000, 2));
    EXPECT_EQ(t.chain->lastError(), RaisedError::ErrRefused);
    EXPECT_EQ(t.chain->State(), 0);
    EXPECT_FALSE(QFileInfo::exists(path("out.wav")));
    // The stop of a chain that never started raises nothing.
    t.chain->Stop();
    QCoreApplication::processEvents();
    EXPECT_TRUE(t.events.isEmpty());

    // A "folder" that is a file takes no file: the destination's error, with the failure bit.
    t.start(path("a.wav"), path("a.wav/out.wav"), WaveFormat(WaveFormat::Pcm16, 44100, 2));
    EXPECT_EQ(t.chain->lastError(), 0);
    ASSERT_TRUE(t.waitFor("error"));
    EXPECT_EQ(t.stateAtError, WaveChain::StateRunning | WaveChain::StateWriteFailed);
    t.chain->Close();
    ASSERT_TRUE(t.waitFor("stopped"));
    EXPECT_FALSE(t.events.contains("end"));
    EXPECT_FALSE(t.chain->State() & WaveChain::StateRunning);

    // A stop after the end raises nothing more; dropping a running chain neither hangs nor
    // crashes.
    t.chain->Stop();
    ASSERT_TRUE(writeTone(path("long.wav"), 60.0, 44100, 2));
    t.start(path("long.wav"), path("again.wav"), WaveFormat(WaveFormat::Pcm16, 22050, 2));
    t.chain.reset();
}
