// The libcdio CD reader and its audio player on generated disc images: its settings, play,
// and copies to WAV read back with libsndfile. The panel's tests show its table of contents.
#include <gtest/gtest.h>

#include <sndfile.h>

#include <QDir>
#include <QFile>
#include <vector>

#include "app/Settings.h"
#include "platform/Components.h"
#include "platform/cdaudio/CdAudioPlayer.h"
#include "platform/cdreader/CdioCDReader.h"
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
#include "support/FakeFormatChooser.h"
#include "support/ImageDrives.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CDReaderTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        env.set("CANTOVEL_AO", QByteArray("null"));
        drives = std::make_shared<ImageDrives>();
        Components::provideService<CdDrives>(drives);
        image = DiscImage::build(tempDir(), {300, 225}).cuePath();
        ASSERT_FALSE(image.isEmpty());
        drives->add(image);
        reader = std::make_unique<CdioCDReader>();
        QObject::connect(reader.get(), &CDReader::CopyStarted, [this] { events << "started"; });
        QObject::connect(reader.get(), &CDReader::CopyFinished, [this] { events << "finished"; });
        QObject::connect(reader.get(), &CDReader::CopyError, [this] { events << "error"; });
        QObject::connect(reader.get(), &CDReader::CopyWriteFailed,
                         [this] { events << "writefailed"; });
    }
    void TearDown() override {
        reader.reset();
        AppTest::TearDown();
    }
    bool copyEnds() {
        return waitUntil([this] { return events.contains(QStringLiteral("finished")); });
    }

    ScopedEnv env;
    std::shared_ptr<ImageDrives> drives;
    QString image;
    std::unique_ptr<CdioCDReader> reader;
    QStringList events;
};

TEST_F(CDReaderTest, SettingsAndTheChosenCopyFormatComeBackAndNonsenseIsIgnored) {
    const QString key = QStringLiteral("Software\\Brightfen\\Cantovel\\DAC");
    reader->setCopyMode(9);  // clamped to 2
    reader->setDeviceID(1);
    reader->Open();  // of the one drive there is
    EXPECT_EQ(reader->lastErrorDescription(), "There is no CD-ROM drive number 1.");
    EXPECT_EQ(reader->DriveState(), CDReader::dsNone);
    FakeFormatChooser::install();
    reader->SelectWaveFormat();  // chooses the format it starts at
    reader->setCopyFormat({WaveFormat::Pcm8, 22050, 1});
    reader->SaveRegistry(RegRoot::CurrentUser, key);
    WriteRegValue(RegRoot::CurrentUser, key, QStringLiteral("BlockCount"), QStringLiteral("x"));

    CdioCDReader other;
    other.LoadRegistry(RegRoot::CurrentUser, key);
    EXPECT_EQ(other.BlockCount(), 26);
    EXPECT_EQ(other.CopyMode(), 2);
    EXPECT_EQ(other.DeviceID(), 1);
    EXPECT_EQ(other.CopyFormat(), (WaveFormat{WaveFormat::Pcm8, 22050, 1}));
    // A declined format dialog keeps the format.
    Components::provideFactory<FormatChooser>([] {
        auto f = std::make_unique<FakeFormatChooser>();
        f->script({std::nullopt});
        return f;
    });
    other.SelectWaveFormat();
    EXPECT_EQ(other.CopyFormat(), (WaveFormat{WaveFormat::Pcm8, 22050, 1}));
}

// A play of the reader ends the track's time in the next track; a paused one holds its
// place; an untimed one runs to its end; a missing disc ends the play with a reason.
TEST_F(CDReaderTest, PlaysPausesRunsToTheEndAndAMissingDiscEndsThePlayWithAReason) {
    reader->Open();
    EXPECT_EQ(reader->CurrentTrack(), 1);
    reader->PlayAudioTrack(1);
    EXPECT_EQ(reader->DriveState(), CDReader::dsPlaying);
    ASSERT_TRUE(waitUntil([&] { return CDReader::ToFrames(reader->Position()) > 460; }, 5000));
    EXPECT_LT(CDReader::ToFrames(reader->Position()), 675);
    EXPECT_EQ(reader->CurrentTrack(), 2);
    reader->PauseAudio();
    EXPECT_EQ(reader->DriveState(), CDReader::dsReady);
    reader->PlayAudioRange(reader->Position(), reader->Tracks()[1].Length);  // past the end
    EXPECT_EQ(reader->DriveState(), CDReader::dsPlaying);
    reader->StopAudio();
    EXPECT_EQ(reader->DriveState(), CDReader::dsReady);

    CdAudioPlayer player;
    ASSERT_TRUE(player.play(image, 0, 300));
    ASSERT_TRUE(waitUntil([&] { return player.position() >= 30; }, 5000));
    player.pause();
    waitUntil([] { return false; }, 100);
    const qint64 held = player.position();
    waitUntil([] { return false; }, 300);
    EXPECT_NEAR(double(player.position()), double(held), 2);
    player.resume();
    ASSERT_TRUE(waitUntil([&] { return player.position() >= held + 15; }, 5000));
    player.stop();

    env.set("CANTOVEL_MPV_UNTIMED", QByteArray("1"));
    CdAudioPlayer fast;
    ASSERT_TRUE(fast.isValid());
    int finished = 0;
    QObject::connect(&fast, &CdAudioPlayer::finished, [&] { ++finished; });
    ASSERT_TRUE(fast.play(image, 300, 150));
    ASSERT_TRUE(waitUntil([&] { return finished > 0; }));
    EXPECT_EQ(fast.state(), CdAudioPlayer::Stopped);
    EXPECT_EQ(fast.position(), 450);
    EXPECT_TRUE(fast.errorText().isEmpty());
    ASSERT_TRUE(fast.play(tempDir() + QStringLiteral("/none.cue"), 0, 75));
    ASSERT_TRUE(waitUntil([&] { return fast.state() == CdAudioPlayer::Stopped; }));
    EXPECT_FALSE(fast.errorText().isEmpty());
    EXPECT_EQ(finished, 1);
}

TEST_F(CDReaderTest, CopiesHoldExactlyTheDiscsSamplesInEveryModeOrTheChosenFormat) {
    reader->Open();
    QString base = tempDir() + QStringLiteral("/rip.wav");
    const QString file = reader->TrackFileName(base, 1);
    EXPECT_EQ(file, tempDir() + QStringLiteral("/rip02.wav"));
    reader->CopyTrack(1, file);
    EXPECT_EQ(reader->CopyState(), 1);
    EXPECT_EQ(reader->CopyStart(), 450);
    ASSERT_TRUE(copyEnds());
    EXPECT_EQ(events, QStringList({"started", "finished"}));
    EXPECT_EQ(reader->CopyState(), 0);
    EXPECT_EQ(reader->CopyPosition(), 675);
    const SoundInfo info = readSoundInfo(file);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(readPcm16(file), DiscImage::pcm(2, 0, 225));
    for (int mode : {0, 2}) {
        events.clear();
        reader->setCopyMode(mode);
        reader->setBlockCount(7);
        const QString each = tempDir() + QStringLiteral("/mode%1.wav").arg(mode);
        reader->CopyTrack(0, each);
        ASSERT_TRUE(copyEnds());
        EXPECT_EQ(readPcm16(each), DiscImage::pcm(1, 0, 300)) << mode;
    }

    events.clear();
    reader->setCopyFormat({WaveFormat::Pcm24, 22050, 1});
    const QString small = tempDir() + QStringLiteral("/small.wav");
    reader->CopyTrack(0, small);
    ASSERT_TRUE(copyEnds());
    EXPECT_EQ(events, QStringList({"started", "finished"}));
    const SoundInfo converted = readSoundInfo(small);
    EXPECT_EQ(converted.rate, 22050);
    EXPECT_EQ(converted.channels, 1);
    EXPECT_EQ(converted.format, SF_FORMAT_WAV | SF_FORMAT_PCM_24);
    EXPECT_NEAR(double(converted.frames), 300 * 588 / 2, 64);  // 4 seconds at half the rate
}

TEST_F(CDReaderTest, AnUnwritableFolderADataTrackAndAStopEndTheCopyOnce) {
    reader->Open();
    // A "folder" that is a file: nobody, not even root, can create a file in it.
    const QString folder = tempDir() + QStringLiteral("/locked");
    ASSERT_TRUE(writeBytes(folder, "x"));
    // As the copy window does: while the copy still runs, stop the reader.
    int stateAtFailure = -1;
    const auto stopOnFailure = QObject::connect(reader.get(), &CDReader::CopyWriteFailed, [&] {
        stateAtFailure = reader->CopyState();
        reader->StopCopy();
    });
    reader->CopyTrack(0, folder + QStringLiteral("/t.wav"));
    ASSERT_TRUE(copyEnds());
    waitUntil([] { return false; }, 100);
    EXPECT_EQ(events, QStringList({"writefailed", "finished"}));
    EXPECT_EQ(stateAtFailure, 1);
    EXPECT_EQ(reader->CopyState(), 0);
    QObject::disconnect(stopOnFailure);

    events.clear();
    reader->setBlockCount(1);
    reader->setCopyMode(0);
    const QString part = tempDir() + QStringLiteral("/part.wav");
    reader->CopyTrack(0, part);
    reader->StopCopy();
    ASSERT_TRUE(copyEnds());
    waitUntil([] { return false; }, 100);
    EXPECT_EQ(events.count(QStringLiteral("finished")), 1);
    EXPECT_TRUE(QFile::exists(part));

    // The disc in the drive becomes one with a data track last.
    ASSERT_TRUE(DiscImage::build(tempDir(), {300, 225}, DiscImage::Data::Last).ok());
    events.clear();
    reader->Open();
    ASSERT_EQ(reader->TrackCount(), 3);
    EXPECT_FALSE(reader->Tracks()[2].IsAudio);
    reader->CopyTrack(2, tempDir() + QStringLiteral("/data.wav"));
    ASSERT_TRUE(copyEnds());
    EXPECT_EQ(events, QStringList({"error", "finished"}));
    EXPECT_FALSE(QFile::exists(tempDir() + QStringLiteral("/data.wav")));
}

}  // namespace
