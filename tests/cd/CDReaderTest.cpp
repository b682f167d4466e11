// The libcdio CD reader and its audio player on a generated disc image, where no window
// drives them: a play run to its end or of a disc that is gone; a stopped copy and a data
// track.
// The windows' tests show its table of contents, settings, pause and copies.
#include <gtest/gtest.h>

#include <QFile>

#include "platform/Components.h"
#include "platform/cdaudio/CdAudioPlayer.h"
#include "platform/cdreader/CdioCDReader.h"
#include "support/AppTest.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
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
        auto drives = std::make_shared<ImageDrives>();
        Components::provideService<CdDrives>(drives);
        image = DiscImage::build(tempDir(), {300, 225}).cuePath();
        ASSERT_FALSE(image.isEmpty());
        drives->add(image);
        reader = std::make_unique<CdioCDReader>();
    }
    void TearDown() override {
        reader.reset();
        AppTest::TearDown();
    }

    ScopedEnv env;
    QString image;
    std::unique_ptr<CdioCDReader> reader;
};

// The player no window waits on: an untimed play runs to its end; a missing disc ends the
// play with a reason.
TEST_F(CDReaderTest, AnUntimedPlayRunsToItsEndAndAMissingDiscEndsThePlayWithAReason) {
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

// A copy stopped as it starts keeps what it read; a data track is refused; each ends once.
TEST_F(CDReaderTest, AStoppedCopyKeepsItsPartAndADataTrackIsRefusedEachEndingOnce) {
    QStringList events;
    QObject::connect(reader.get(), &CDReader::CopyError, [&] { events << "error"; });
    QObject::connect(reader.get(), &CDReader::CopyFinished, [&] { events << "finished"; });
    // The disc in the drive becomes one with a data track last.
    ASSERT_TRUE(DiscImage::build(tempDir(), {300, 225}, DiscImage::Data::Last).ok());
    reader->setDeviceID(1);
    reader->Open();  // of the one drive there is
    EXPECT_EQ(reader->lastErrorDescription(), "There is no CD-ROM drive number 1.");
    reader->setDeviceID(0);
    reader->Open();
    reader->setBlockCount(1);
    const QString part = tempDir() + QStringLiteral("/part.wav");
    reader->CopyTrack(0, part);
    reader->StopCopy();
    ASSERT_TRUE(waitUntil([&] { return !events.isEmpty(); }));
    waitUntil([] { return false; }, 100);
    EXPECT_EQ(events, QStringList{"finished"});
    EXPECT_TRUE(QFile::exists(part));

    events.clear();
    ASSERT_EQ(reader->TrackCount(), 3);
    reader->CopyTrack(2, tempDir() + QStringLiteral("/data.wav"));
    ASSERT_TRUE(waitUntil([&] { return events.contains(QStringLiteral("finished")); }));
    EXPECT_EQ(events, QStringList({"error", "finished"}));
    EXPECT_FALSE(QFile::exists(tempDir() + QStringLiteral("/data.wav")));
}

}  // namespace
