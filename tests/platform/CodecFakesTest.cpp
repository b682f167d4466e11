#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

#include "platform/Components.h"
#include "support/FakeClock.h"
#include "support/FakeFormatChooser.h"
#include "support/FakeMp3Decoder.h"
#include "support/FakeMp3Encoder.h"
#include "support/FakeWaveChain.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CodecFakes : public ::testing::Test {
  protected:
    void SetUp() override {
        clock = std::make_shared<FakeClock>();
        Components::provideService<Clock>(clock);
    }
    QString path(const QString& name) const { return dir.filePath(name); }
    std::shared_ptr<FakeClock> clock;
    QTemporaryDir dir;
};

}  // namespace

TEST_F(CodecFakes, EncoderRunsInVirtualTimeAndAnswersFromItsScript) {
    FakeMp3Encoder::install();
    std::unique_ptr<Mp3Encoder> made = Components::create<Mp3Encoder>();
    FakeMp3Encoder* encoder = FakeMp3Encoder::latest();
    ASSERT_EQ(made.get(), encoder);
    QList<qint32> progress;
    int done = 0;
    QObject::connect(encoder, &Mp3Encoder::EncodeProgress, [&](qint32 v) { progress << v; });
    QObject::connect(encoder, &Mp3Encoder::EncodeDone, [&] { ++done; });

    encoder->run.autoRun = true;
    encoder->run.script("bad.wav", Mp3Encoder::SourceDamaged, true);
    EXPECT_EQ(encoder->SetFiles(path("bad.wav"), path("bad.mp3")), Mp3Encoder::SourceDamaged);
    EXPECT_EQ(encoder->lastError(), RaisedError::ErrRefused);
    encoder->Start();
    clock->advance(1000);
    EXPECT_EQ(done, 0);

    encoder->setBitrate(64000);
    encoder->setDownMix(true);
    EXPECT_EQ(encoder->SetFiles(path("a.wav"), path("a.mp3")), 0);
    encoder->Start();
    EXPECT_EQ(encoder->startSettings.last(), qMakePair(qint32(64000), true));
    clock->advance(250);
    EXPECT_EQ(progress, QList<qint32>({25, 50}));
    clock->advance(250);
    EXPECT_EQ(progress, QList<qint32>({25, 50, 75, 100}));
    EXPECT_EQ(done, 1);
    QFile out(path("a.mp3"));
    ASSERT_TRUE(out.open(QIODevice::ReadOnly));
    EXPECT_EQ(out.readAll(), path("a.wav").toUtf8());

    // A stopped run stays silent.
    encoder->SetFiles(path("b.wav"), path("b.mp3"));
    encoder->Start();
    encoder->Stop();
    clock->advance(1000);
    EXPECT_EQ(done, 1);
    EXPECT_EQ(encoder->run.stops, 1);
}

TEST_F(CodecFakes, DecoderIsDrivenByExplicitCalls) {
    FakeMp3Decoder decoder;
    int done = 0;
    QObject::connect(&decoder, &Mp3Decoder::DecodeDone, [&] { ++done; });
    decoder.SetFiles(path("a.mp3"), path("a.wav"));
    decoder.StartDecode();
    EXPECT_TRUE(decoder.run.running);
    decoder.run.failWrite();
    EXPECT_TRUE(decoder.WriteFailed());
    EXPECT_EQ(done, 1);
    decoder.run.finish();  // nothing runs any more
    EXPECT_EQ(done, 1);
}

TEST_F(CodecFakes, WaveChainRaisesTheTriggerEventsAndTheWriteFailure) {
    FakeWaveChain chain;
    QStringList events;
    QObject::connect(&chain, &WaveChain::TriggerStarted, [&] { events << "started"; });
    QObject::connect(&chain, &WaveChain::TriggerDataEnd, [&] { events << "end"; });
    QObject::connect(&chain, &WaveChain::TriggerStopped, [&] { events << "stopped"; });
    QObject::connect(&chain, &WaveChain::DstFileError, [&] { events << "error"; });
    chain.autoRun = true;
    chain.setSrcFileName(path("a.wav"));
    chain.setDstFileName(path("out.wav"));
    chain.Start();
    EXPECT_EQ(chain.State(), WaveChain::StateRunning);
    clock->advance(400);
    EXPECT_EQ(events, QStringList({"started", "end"}));
    EXPECT_EQ(chain.SrcPosition(), chain.SrcLength());
    chain.Stop();
    QCoreApplication::processEvents();
    EXPECT_EQ(events.last(), "stopped");

    chain.autoRun = false;
    chain.Start();
    QCoreApplication::processEvents();
    chain.failWrite();
    EXPECT_EQ(chain.State(), WaveChain::StateRunning | WaveChain::StateWriteFailed);
    chain.Close();
    QCoreApplication::processEvents();
    EXPECT_EQ(events.mid(3), QStringList({"started", "error", "stopped"}));
    EXPECT_EQ(chain.closes, 1);

    chain.scriptStartError("a.wav", "no");
    chain.Start();
    EXPECT_EQ(chain.lastErrorDescription(), "no");
    EXPECT_EQ(chain.conversions.size(), 2);
}

TEST_F(CodecFakes, FormatChooserAnswersFromItsScript) {
    FakeFormatChooser chooser;
    WaveFormat ulaw;
    ulaw.encoding = WaveFormat::MuLaw;
    ulaw.sampleRate = 8000;
    ulaw.channels = 1;
    chooser.script({ulaw, std::nullopt});
    EXPECT_TRUE(chooser.ChooseFormat("Select..."));
    EXPECT_EQ(chooser.Format(), ulaw);
    EXPECT_FALSE(chooser.ChooseFormat("Select...", WaveFormat{}));
    EXPECT_EQ(chooser.Format(), ulaw);
    EXPECT_TRUE(chooser.ChooseFormat("Select...", WaveFormat{}));
    EXPECT_EQ(chooser.Format(), WaveFormat{});
    EXPECT_EQ(chooser.showings.size(), 3);
}
