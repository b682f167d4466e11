// The track extractor on cd-paranoia, and the CD to MP3 window on it and LAME, reading a
// CUE/BIN disc image made by the test.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <vector>

#include "app/Settings.h"
#include "convert/FileConversionFixture.h"
#include "convert/frmCDtoMP3.h"
#include "platform/Components.h"
#include "platform/cddrives/CdDrives.h"
#include "platform/mp3encoder/LameMp3Encoder.h"
#include "platform/trackextractor/ParanoiaTrackExtractor.h"
#include "support/AudioFixtures.h"
#include "support/DiscImage.h"
#include "support/ImageDrives.h"

using namespace cantovel;
using namespace cantovel::test;

namespace {

constexpr int kSectorFrames = DiscImage::kSectorBytes / 4;

// Two audio tracks of `seconds` each, as one BIN with its CUE.
QString writeImage(const QTemporaryDir& dir, int seconds) {
    const DiscImage disc = DiscImage::buildSeconds(dir.path(), {seconds, seconds});
    return disc.ok() ? disc.cuePath() : QString();
}

// The program's CD drives: one, holding the image.
void provideDrive(const QString& image) {
    auto drives = std::make_shared<ImageDrives>();
    drives->add(image);
    Components::provideService<CdDrives>(drives);
}

struct ExtractorUnderTest {
    ParanoiaTrackExtractor acd;
    QStringList events;
    QList<qint32> progress;
    ExtractorUnderTest() {
        QObject::connect(&acd, &TrackExtractor::ExtractBegin, [this] { events << "begin"; });
        QObject::connect(&acd, &TrackExtractor::ExtractProgress, [this](qint32 v) {
            if (progress.isEmpty()) events << "progress";
            progress << v;
        });
        QObject::connect(&acd, &TrackExtractor::ExtractDone, [this] { events << "done"; });
    }
};

class TrackExtractorTest : public ::testing::Test {
  protected:
    void SetUp() override {
        Components::clear();
        cue = writeImage(dir, 2);
        ASSERT_FALSE(cue.isEmpty());
        provideDrive(cue);
    }
    void TearDown() override { Components::clear(); }
    QTemporaryDir dir;
    QString cue;
};

TEST_F(TrackExtractorTest, ListsTheDrivesAndTheDiscsTracks) {
    ExtractorUnderTest t;
    EXPECT_EQ(t.acd.Initialize(), 0);
    EXPECT_EQ(t.acd.DriveCount(), 1);
    EXPECT_EQ(t.acd.DriveName(1), QStringLiteral("disc.cue"));
    EXPECT_EQ(t.acd.TrackCount(), 0);
    t.acd.SelectDrive(1);
    ASSERT_EQ(t.acd.TrackCount(), 2);
    EXPECT_EQ(t.acd.TrackLength(1), 2000);
    EXPECT_EQ(t.acd.TrackLength(3), 0);
    QString out = dir.filePath("x.wav");
    EXPECT_EQ(t.acd.ExtractTrack(out, 3), TrackExtractor::NoSuchTrack);
    t.acd.SelectDrive(2);
    EXPECT_EQ(t.acd.ExtractTrack(out, 1), TrackExtractor::NoDisc);
}

TEST_F(TrackExtractorTest, WritesATrackAsCdQualityWav) {
    ExtractorUnderTest t;
    t.acd.Initialize();
    t.acd.SelectDrive(1);
    QString out = dir.filePath("two.wav");
    ASSERT_EQ(t.acd.ExtractTrack(out, 2), TrackExtractor::Started);
    ASSERT_TRUE(waitUntil([&] { return t.events.contains("done"); }));
    EXPECT_EQ(t.events, QStringList({"begin", "progress", "done"}));
    EXPECT_EQ(t.progress.last(), 1000);
    EXPECT_TRUE(std::is_sorted(t.progress.begin(), t.progress.end()));
    const SoundInfo info = readSoundInfo(out);
    ASSERT_TRUE(info.ok);
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(info.rate, 44100);
    EXPECT_EQ(info.channels, 2);
    EXPECT_EQ(info.frames, 150 * kSectorFrames);
    // The sound is the second track's, sample for sample.
    EXPECT_EQ(readPcm16(out), DiscImage::pcm(2, 0, 150));
}

TEST_F(TrackExtractorTest, AbortEndsTheRunWithoutItsEnd) {
    ExtractorUnderTest t;
    t.acd.SelectDrive(1);
    QString out = dir.filePath("one.wav");
    ASSERT_EQ(t.acd.ExtractTrack(out, 1), TrackExtractor::Started);
    t.acd.Abort();
    QCoreApplication::processEvents();
    EXPECT_FALSE(t.events.contains("done"));
    // A new run after it goes through.
    ASSERT_EQ(t.acd.ExtractTrack(out, 1), TrackExtractor::Started);
    ASSERT_TRUE(waitUntil([&] { return t.events.contains("done"); }));
    EXPECT_EQ(readSoundInfo(out).frames, 150 * kSectorFrames);
}

class CDtoMP3RunTest : public FileConversionFixture {
  protected:
    void SetUp() override {
        FileConversionFixture::SetUp();
        cue = writeImage(dir, 2);
        ASSERT_FALSE(cue.isEmpty());
        provideDrive(cue);
        Components::provideFactory<TrackExtractor>(
            [] { return std::make_unique<ParanoiaTrackExtractor>(); });
        Components::provideFactory<Mp3Encoder>([] { return std::make_unique<LameMp3Encoder>(); });
        temp = tempDir() + QStringLiteral("/tmp");
        QDir().mkpath(temp);
        SaveAppSetting(QStringLiteral("Temp  Location"), temp);
        SaveAppSetting(QStringLiteral("CD to MP3 Path"), out());
        SaveAppSetting(QStringLiteral("Conversion Bitrate"), QStringLiteral("1"));
    }
    QTemporaryDir dir;
    QString cue, temp;
};

TEST_F(CDtoMP3RunTest, ATrackOfADiscImageBecomesAnMp3OfItsLength) {
    frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
    ASSERT_EQ(w.List1->count(), 2);
    EXPECT_EQ(w.List1->item(1)->text(), QStringLiteral("Track 02     Length: 00:02"));
    w.List1->item(1)->setSelected(true);
    w.mnuConvert->trigger();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Convert CD to MP3 - Conversion(s) Complete"));
    const Mp3Info mp3 = decodeMp3(out() + QStringLiteral("/Track2.mp3"));
    ASSERT_TRUE(mp3.ok);
    EXPECT_EQ(mp3.bitrateKbps, 64);
    EXPECT_EQ(mp3.channels, 2);
    EXPECT_NEAR(double(mp3.samples) / mp3.rate, 2.0, 0.01);
    EXPECT_GT(mp3.rms, 0.1);
    EXPECT_FALSE(QFileInfo::exists(temp + QStringLiteral("/track.wav")));
    EXPECT_TRUE(msgBox().shown.isEmpty());
}

// The temporary space and the output share a disk that fills up (the low-space question
// answered Yes): the user is told which file could not be written, the title is not the
// one of a complete run, and an older MP3 of the output's name stays whole.
TEST_F(CDtoMP3RunTest, ADiskThatFillsUpIsToldAndKeepsTheOlderMp3) {
    const QString full = tempDir() + QStringLiteral("/full");
    SaveAppSetting(QStringLiteral("Temp  Location"), full);
    SaveAppSetting(QStringLiteral("CD to MP3 Path"), full);
    const QString output = full + QStringLiteral("/Track2.mp3");
    const QByteArray older(10000, 'o');
    // The track is 2 s: about 350 KB of WAV on the way to 16 KB of MP3.
    const int code = runOnFillingFolder(full, 128 * 1024, [&] {
        if (!writeBytes(output, older)) return 1;
        msgBox().script({Mb::Yes, Mb::Yes});
        frmCDtoMP3& w = Forms::touch<frmCDtoMP3>();
        w.List1->item(1)->setSelected(true);
        w.mnuConvert->trigger();
        QStringList told = msgBox().texts();
        // Asked when the temporary space is short, as a tmpfs here is.
        told.removeIf([](const QString& t) { return t.contains("running low on disk space"); });
        if (told.size() != 1 || !told[0].startsWith(QStringLiteral("Unable to write file:  ")))
            return 2;
        if (w.windowTitle() == QStringLiteral("Convert CD to MP3 - Conversion(s) Complete"))
            return 3;
        if (fileBytes(output) != older || !hiddenFiles(full).isEmpty()) return 4;
        return 0;
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
