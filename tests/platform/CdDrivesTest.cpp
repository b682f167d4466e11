// The CD drive layer on disc images that libcdio opens as drives.

#include <QDir>
#include <QFile>

#include "cd/CdTrackFolders.h"
#include "platform/cddrives/CdaFile.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "support/AppTest.h"
#include "support/DiscImage.h"
#include "support/ScopedEnv.h"

namespace cantovel::test {
namespace {

class CdDrivesTest : public AppTest {
  protected:
    // The drive lettered for `device`, or a null letter.
    CdDrive driveFor(const QString& device) {
        for (const CdDrive& d : drives.Drives())
            if (d.Device == device) return d;
        return {};
    }

    LibcdioCdDrives drives;
    ScopedEnv env;
};

TEST_F(CdDrivesTest, ImagesFromTheSettingsComeBeforeThoseOfTheEnvironment) {
    const DiscImage a = DiscImage::buildSeconds(tempDir(), {5}, DiscImage::Data::None, "a");
    const DiscImage b = DiscImage::buildSeconds(tempDir(), {5}, DiscImage::Data::None, "b");
    LibcdioCdDrives::SetImageList({b.cuePath()});
    env.set("CANTOVEL_CD_IMAGES", a.cuePath() + ":");
    EXPECT_EQ(LibcdioCdDrives::ImageList(), QStringList{b.cuePath()});

    const CdDrive first = driveFor(b.cuePath()), second = driveFor(a.cuePath());
    ASSERT_FALSE(first.Letter.isNull());
    EXPECT_EQ(second.Letter.unicode(), first.Letter.unicode() + 1);
    EXPECT_EQ(first.Name, "b.cue");
    EXPECT_GE(first.Letter, QChar('D'));
}

TEST_F(CdDrivesTest, TrackFolderHoldsOneCdaFilePerAudioTrack) {
    // A data track first: the audio tracks keep their disc numbers, 2 and 3.
    const DiscImage disc = DiscImage::build(tempDir(), {1000, 9000}, DiscImage::Data::First);
    env.set("CANTOVEL_CD_IMAGES", disc.cuePath());
    const CdDrive drive = driveFor(disc.cuePath());
    ASSERT_FALSE(drive.Letter.isNull());

    const QString folder = drives.TrackFolder(drive.Letter.toLower());
    ASSERT_FALSE(folder.isEmpty());
    EXPECT_TRUE(folder.endsWith(QStringLiteral("/cantovel/cd/") + drive.Letter));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), (QStringList{"Track02.cda", "Track03.cda"}));

    QFile raw(folder + "/Track03.cda");
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray bytes = raw.readAll();
    ASSERT_EQ(bytes.size(), 44);
    EXPECT_TRUE(bytes.startsWith("RIFF"));
    EXPECT_EQ(bytes.mid(8, 4), "CDDA");

    const auto cda = CdaFile::fromBytes(bytes);
    ASSERT_TRUE(cda);
    EXPECT_EQ(cda->Version, 1);
    EXPECT_EQ(cda->Track, 3);
    EXPECT_EQ(cda->Start, uint32_t(disc.startSector(3)));
    EXPECT_EQ(cda->Length, 9000u);
    // 300 + 1000 sectors from the start of the program area, plus the two-second lead-in.
    EXPECT_EQ(cda->StartMin, 0);
    EXPECT_EQ(cda->StartSec, (1300 + 150) / 75);
    EXPECT_EQ(cda->StartFrame, (1300 + 150) % 75);
    EXPECT_EQ(cda->LengthMin, 2);
    EXPECT_EQ(cda->LengthSec, 0);
    EXPECT_EQ(cda->LengthFrame, 0);
    // Every track of one disc carries the same serial, and it is not blank.
    EXPECT_NE(cda->Serial, 0u);
    EXPECT_EQ(CdaFile::read(folder + "/Track02.cda")->Serial, cda->Serial);

    EXPECT_EQ(drives.DriveOfPath(folder + "/Track02.cda").Device, disc.cuePath());
    EXPECT_TRUE(drives.DriveOfPath(tempDir() + "/Track02.cda").Letter.isNull());
}

TEST_F(CdDrivesTest, ADifferentDiscGetsADifferentSerialAndNoDiscNoStaleTracks) {
    const DiscImage one = DiscImage::buildSeconds(tempDir(), {60, 60, 60});
    env.set("CANTOVEL_CD_IMAGES", one.cuePath());
    const QChar letter = driveFor(one.cuePath()).Letter;
    const QString folder = drives.TrackFolder(letter);
    const uint32_t first = CdaFile::read(folder + "/Track01.cda")->Serial;

    // Another disc in the same drive: the image is rewritten in place.
    ASSERT_TRUE(DiscImage::buildSeconds(tempDir(), {61, 59}).ok());

    ASSERT_EQ(drives.TrackFolder(letter), folder);
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), (QStringList{"Track01.cda", "Track02.cda"}));
    EXPECT_NE(CdaFile::read(folder + "/Track01.cda")->Serial, first);

    // The disc taken out: no folder, and the old tracks go.
    QFile::remove(one.cuePath());
    EXPECT_TRUE(drives.TrackFolder(letter).isEmpty());
    EXPECT_TRUE(QDir(folder).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(drives.TrackFolder('Z').isEmpty());
}

// What the file dialogs offer: the track folder of each drive with a disc, and nothing for
// a drive whose disc went.
TEST_F(CdDrivesTest, DialogsOfferTheTrackFoldersOfTheDiscsInTheDrives) {
    Components::provideService<CdDrives>(std::make_shared<LibcdioCdDrives>());
    const DiscImage first = DiscImage::buildSeconds(tempDir() + "/a", {4});
    const DiscImage second = DiscImage::buildSeconds(tempDir() + "/b", {4, 4});
    env.set("CANTOVEL_CD_IMAGES", first.cuePath() + ":" + second.cuePath());
    const QStringList folders = CdTrackFolders();
    ASSERT_EQ(folders.size(), 2);
    EXPECT_EQ(QDir(folders[0]).entryList(QDir::Files), QStringList{"Track01.cda"});
    EXPECT_EQ(QDir(folders[1]).entryList(QDir::Files), (QStringList{"Track01.cda", "Track02.cda"}));

    QFile::remove(first.cuePath());
    EXPECT_EQ(CdTrackFolders(), QStringList{folders[1]});
}

TEST(CdaFileTest, RejectsWhatIsNotACdAudioTrack) {
    EXPECT_FALSE(CdaFile::fromBytes(QByteArray(44, 'x')));
    QByteArray wave = CdaFile::fromSectors(1, 2, 3, 4).toBytes();
    wave.replace(8, 4, "WAVE");
    EXPECT_FALSE(CdaFile::fromBytes(wave));
    EXPECT_FALSE(CdaFile::fromBytes(CdaFile::fromSectors(1, 2, 3, 4).toBytes().left(40)));
    EXPECT_FALSE(CdaFile::read("/nonexistent/Track01.cda"));
}

}  // namespace
}  // namespace cantovel::test
