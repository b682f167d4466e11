// The CD drive layer over libcdio, on disc images it opens as drives.

#include <QDir>
#include <QFile>

#include "cd/CdTrackFolders.h"
#include "platform/Components.h"
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

TEST_F(CdDrivesTest, ImagesFromTheSettingsComeFirstAndEachDiscGivesACdaFilePerAudioTrack) {
    // A data track first: the audio tracks keep their disc numbers, 2 and 3.
    const DiscImage a = DiscImage::build(tempDir(), {1000, 9000}, DiscImage::Data::First, "a");
    const DiscImage b = DiscImage::buildSeconds(tempDir(), {5}, DiscImage::Data::None, "b");
    LibcdioCdDrives::SetImageList({b.cuePath()});
    env.set("CANTOVEL_CD_IMAGES", a.cuePath() + ":");
    const CdDrive first = driveFor(b.cuePath()), second = driveFor(a.cuePath());
    ASSERT_FALSE(first.Letter.isNull());
    EXPECT_EQ(second.Letter.unicode(), first.Letter.unicode() + 1);
    EXPECT_EQ(first.Name, "b.cue");

    const QString folder = drives.TrackFolder(second.Letter.toLower());
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), (QStringList{"Track02.cda", "Track03.cda"}));
    QFile raw(folder + "/Track03.cda");
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray bytes = raw.readAll();
    const auto cda = CdaFile::fromBytes(bytes);
    ASSERT_TRUE(cda);
    EXPECT_EQ(cda->Track, 3);
    EXPECT_EQ(cda->Start, uint32_t(a.startSector(3)));
    EXPECT_EQ(cda->Length, 9000u);
    // 300 + 1000 sectors from the start of the program area, plus the two-second lead-in.
    EXPECT_EQ(QList<int>({cda->StartMin, cda->StartSec, cda->StartFrame, cda->LengthMin,
                          cda->LengthSec, cda->LengthFrame}),
              QList<int>({0, (1300 + 150) / 75, (1300 + 150) % 75, 2, 0, 0}));
    // Every track of one disc carries the same serial, and it is not blank.
    EXPECT_NE(cda->Serial, 0u);
    EXPECT_EQ(CdaFile::read(folder + "/Track02.cda")->Serial, cda->Serial);
    EXPECT_FALSE(CdaFile::fromBytes(QByteArray(bytes).replace(8, 4, "WAVE")));
    EXPECT_EQ(drives.DriveOfPath(folder + "/Track02.cda").Device, a.cuePath());
    EXPECT_TRUE(drives.DriveOfPath(tempDir() + "/Track02.cda").Letter.isNull());

    // The file dialogs offer the track folder of each drive with a disc, in drive order; a
    // disc taken out takes its folder and tracks along.
    Components::provideService<CdDrives>(std::make_shared<LibcdioCdDrives>());
    const QString bFolder = drives.TrackFolder(first.Letter);
    EXPECT_EQ(CdTrackFolders(), (QStringList{bFolder, folder}));
    QFile::remove(a.cuePath());
    EXPECT_EQ(CdTrackFolders(), QStringList{bFolder});
    EXPECT_TRUE(drives.TrackFolder(second.Letter).isEmpty());
    EXPECT_TRUE(QDir(folder).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(drives.TrackFolder('Z').isEmpty());
}

}  // namespace
}  // namespace cantovel::test
