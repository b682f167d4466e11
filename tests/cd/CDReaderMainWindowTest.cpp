// The main window plays a track of a disc image through the real CD reader: opening
// "Track02.cda" from the drive's folder plays that track with the time running through a
// pause, and a track of an image whose BIN is shorter than its CUE says ends where the data
// ends.
#include <gtest/gtest.h>

#include <QFile>

#include "platform/cdreader/CdioCDReader.h"
#include "platform/clock/QtClock.h"
#include "player/PlayerTest.h"
#include "player/frmTempCD.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"
#include "support/ScopedEnv.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

class CDReaderMainWindowTest : public PlayerTest {
  protected:
    void installPlayers() override {
        env.set("CANTOVEL_AO", QByteArray("null"));
        FakeMediaPlayer::install();
        // Real time: the sound runs on mpv's threads.
        Components::provideService<Clock>(std::make_shared<QtClock>());
        drives = std::make_shared<ImageDrives>(tempDir() + QStringLiteral("/drives"));
        // Drive D holds another disc; the track is on E.
        drives->add(
            DiscImage::build(tempDir(), {150}, DiscImage::Data::None, QStringLiteral("other"))
                .cuePath(),
            1);
        drives->add(DiscImage::build(tempDir(), {150, 225}).cuePath(), 2);
        // F: the CUE tells of 150 and 75 sectors; the BIN holds 100.
        const DiscImage cut = DiscImage::build(tempDir() + QStringLiteral("/cut"), {150, 75});
        ASSERT_TRUE(QFile::resize(cut.binPath(), 100 * DiscImage::kSectorBytes));
        drives->add(cut.cuePath(), 2);
        Components::provideService<CdDrives>(drives);
        Components::provideFactory<CDReader>([] { return std::make_unique<CdioCDReader>(); });
    }

    ScopedEnv env;
    std::shared_ptr<ImageDrives> drives;
};

TEST_F(CDReaderMainWindowTest, OpeningATrackFilePlaysItWithTheTimeRunningToTheEndOfItsData) {
    openByDialog(drives->TrackFolder(u'E') + QStringLiteral("/Track02.cda"));
    EXPECT_TRUE(msgBox().shown.isEmpty());
    EXPECT_EQ(main->TitleText(), "Audio Track #2");
    auto* cd = Forms::find<frmTempCD>();
    ASSERT_NE(cd, nullptr);
    auto* reader = static_cast<CdioCDReader*>(cd->CDReader.get());
    EXPECT_TRUE(reader->device().endsWith("disc.cue"));
    EXPECT_EQ(reader->DriveState(), CDReader::dsPlaying);

    // The time runs: the thumb leaves its start within two ticks.
    ASSERT_TRUE(Clock::get().wait(2500, [&] { return main->imgPlayProgress.rect.left() > 16; }));
    EXPECT_EQ(reader->CurrentTrack(), 2);
    // A pause holds the place; the second press plays on from there, the time running again.
    temp->mnuPause->trigger();
    Clock::get().wait(100);
    const qint64 held = CDReader::ToFrames(reader->Position());
    Clock::get().wait(300);
    EXPECT_NEAR(double(CDReader::ToFrames(reader->Position())), double(held), 2);
    temp->mnuPause->trigger();
    EXPECT_EQ(reader->DriveState(), CDReader::dsPlaying);
    // And the end of the track returns the window to idle.
    ASSERT_TRUE(Clock::get().wait(5000, [&] { return !main->CDR_Timer.isEnabled(); }));
    EXPECT_EQ(temp->mnuPlay->text(), "&Open...");

    // A play of a short image ends where the data ends.
    for (const char* track : {"/Track01.cda", "/Track02.cda"}) {
        SCOPED_TRACE(track);
        openByDialog(drives->TrackFolder(u'F') + QLatin1String(track));
        EXPECT_TRUE(msgBox().shown.isEmpty());
        ASSERT_TRUE(Clock::get().wait(10000, [&] { return !main->CDR_Timer.isEnabled(); }));
        EXPECT_EQ(temp->mnuPlay->text(), "&Open...");
    }
}

}  // namespace
