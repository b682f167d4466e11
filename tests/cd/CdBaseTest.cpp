// CdBase's CD half: disc identity, positions, tracks, properties and status words.

#include <QDir>

#include "cd/CdBase_Code.h"
#include "platform/cddrives/CdaFile.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "support/CdBaseFixture.h"
#include "support/DiscImage.h"
#include "support/ScopedEnv.h"

namespace cantovel::test {
namespace {

class CdBaseTest : public CdBaseFixture {};

TEST_F(CdBaseTest, StartsWithTheClassicValues) {
    CdBase& c = make();
    EXPECT_EQ(c.AppName(), "ActiveX");
    EXPECT_EQ(c.Revision(), "1.0");
    EXPECT_EQ(c.Port, 0);
    EXPECT_EQ(c.ConnectTimeout(), 0);
    EXPECT_EQ(c.Timer1.interval(), 30000);
    EXPECT_FALSE(c.Timer1.isEnabled());
    EXPECT_FALSE(c.UseFirstMatch);
    EXPECT_TRUE(c.Server.isEmpty());
}

TEST_F(CdBaseTest, DiscIdOfTheExampleDiscOnAClosedDeviceOpensComputesAndClosesAnOpenOneStays) {
    CdBase& c = make();
    EXPECT_EQ(c.Cdid(), "0e021a03");
    EXPECT_EQ(c.DiscLength, 538);
    EXPECT_EQ(c.Tracks, 3);
    EXPECT_EQ(c.SongLength(2, false), 2 * 60 + 49);  // 2:49.70, the frames dropped
    EXPECT_EQ(c.SongLength(4, false), 0);
    EXPECT_EQ(mci->commands, (QStringList{"Open", "Close"}));
    EXPECT_FALSE(mci->open);
    EXPECT_EQ(c.GetQueryString(), "0e021a03 3 150 15010 27755 538");

    // An open device stays open.
    mci->commands.clear();
    c.setCommand("open");
    EXPECT_EQ(c.Command(), "open");
    EXPECT_EQ(mci->deviceType(), "CDAudio");
    EXPECT_EQ(c.Cdid(), "0e021a03");
    EXPECT_TRUE(mci->open);
    EXPECT_FALSE(mci->commands.contains("Close"));
}

TEST_F(CdBaseTest, ADigitSumTotalOf255StartsTheIdWithZeros) {
    CdBase& c = make();
    // Seventeen tracks whose start seconds each have the digit sum 15.
    QList<qint64> starts;
    for (int s : {69, 78, 87, 96, 159, 168, 177, 186, 195, 249, 258, 267, 276, 285, 294, 339, 348})
        starts << s * 75;
    mci->setDisc(starts, 400 * 75);
    const QString id = c.Cdid();
    EXPECT_EQ(id.left(2), "00");
    EXPECT_EQ(id, "00" + QString("%1").arg(400 - 69, 4, 16, QChar('0')) + "11");
}

TEST_F(CdBaseTest, NoDiscOrNoDeviceGivesAnEmptyId) {
    CdBase& c = make();
    mci->setDisc({}, 0);
    c.DiscLength = 77;
    EXPECT_EQ(c.Cdid(), "");
    EXPECT_EQ(c.LastError().Description, "No Audio CD found");
    EXPECT_EQ(c.LastError().Number, 0x8004025Au);
    EXPECT_TRUE(mci->open);  // opened by this read, and still open
    EXPECT_EQ(c.Tracks, 0);
    EXPECT_EQ(c.DiscLength, 77);
    EXPECT_TRUE(msgBox().shown.isEmpty());

    // A device that will not open gives an empty id, whatever disc it holds.
    c.setCommand("Close");
    mci->setDisc({150, 15010, 27755}, 40500);
    mci->canOpen = false;
    c.setCommand("Open");
    EXPECT_EQ(c.LastError().Description, "Unable to open device");
    EXPECT_EQ(c.Cdid(), "");
    EXPECT_EQ(c.LastError().Source, "Cddb Control");
    EXPECT_EQ(c.CurrentTrack(), 0);
}

TEST_F(CdBaseTest, PositionIsTimeFromTheStartOfTrackOneAndTheLaterTrackAtABoundary) {
    CdBase& c = make();
    c.setCommand("Open");
    mci->position = 150 + 65 * 75 + 3;
    EXPECT_EQ(c.Position(4), "1:05");
    EXPECT_EQ(c.Position(3), "65");
    EXPECT_EQ(c.Position(2), QString::number(65 * 75 + 3));
    EXPECT_EQ(c.Position(1), QString::number(1 + 5 * 256 + 3 * 65536));
    EXPECT_EQ(c.Position(5), "");
    mci->position = 150 + 600 * 75;
    EXPECT_EQ(c.Position(4), "10:00");

    // The current track at a boundary is the later track.
    mci->position = 15010;
    EXPECT_EQ(c.CurrentTrack(), 2);
    mci->position = 15009;
    EXPECT_EQ(c.CurrentTrack(), 1);
    mci->position = 100;  // in the lead-in: no track, the stored number stays
    EXPECT_EQ(c.CurrentTrack(), 0);
}

TEST_F(CdBaseTest, PlayTrackPlaysExactlyThatTrackAndATrackTooHighDoesNothing) {
    CdBase& c = make();
    c.setCommand("Open");
    c.PlayTrack(2);
    EXPECT_EQ(mci->from, 15010);
    EXPECT_EQ(mci->to, 27755);
    EXPECT_EQ(mci->Mode(), MciDevice::mciModePlay);
    const QStringList before = mci->commands;
    c.PlayTrack(4);
    c.setCurrentTrack(4);
    EXPECT_EQ(mci->commands, before);
    EXPECT_EQ(mci->Mode(), MciDevice::mciModePlay);

    c.setCurrentTrack(3);
    EXPECT_EQ(mci->commands.last(), "Stop");
    EXPECT_EQ(mci->Mode(), MciDevice::mciModeStop);
    mci->position = 27755 + 10;
    EXPECT_EQ(c.CurrentTrack(), 3);
    c.setCommand("PLAY");  // the next play starts where the track was set
    EXPECT_EQ(mci->from, 27755);
}

TEST_F(CdBaseTest, ConnectTimeoutIsClampedAndSetsTheTimer) {
    CdBase& c = make();
    c.setConnectTimeout(100);
    EXPECT_EQ(c.ConnectTimeout(), 5000);
    EXPECT_EQ(c.Timer1.interval(), 5000);
    c.setConnectTimeout(70000);
    EXPECT_EQ(c.ConnectTimeout(), 65535);
    c.setConnectTimeout(30000);
    EXPECT_EQ(c.Timer1.interval(), 30000);
}

TEST_F(CdBaseTest, StatusWordsAreRaisedOnlyWhenTheModeChanges) {
    CdBase& c = make();
    QStringList words;
    QObject::connect(&c, &CdBase::ModeChange, [&](const QString& w) { words << w; });
    mci->tick();
    c.setCommand("Open");
    mci->tick();
    mci->tick();
    c.setCommand("Play");
    mci->tick();
    c.setCommand("Eject");
    mci->tick();
    mci->mode = 999;
    mci->tick();
    EXPECT_EQ(words, (QStringList{"Device is not open", "Device is stopped", "Device is playing",
                                  "Tray is out", ""}));
}

TEST_F(CdBaseTest, BlanksAreRefusedInTheGreetingProperties) {
    CdBase& c = make();
    c.setEmail("me@here");
    c.setEmail("me @here");
    c.setRevision("2 0");
    c.setAppName("My App");
    c.setHostName("my host");
    EXPECT_EQ(c.Email(), "me@here");
    EXPECT_EQ(c.Revision(), "1.0");
    EXPECT_EQ(c.AppName(), "ActiveX");
    EXPECT_EQ(c.HostName(), "");
    ASSERT_EQ(msgBox().shown.size(), 4);
    EXPECT_EQ(msgBox().shown[0].text, "No spaces allowed in Email");
    EXPECT_EQ(msgBox().shown[0].title, "Cddb Control Error");
    EXPECT_EQ(Mb::iconOf(msgBox().shown[0].style), Mb::Critical);
    EXPECT_EQ(msgBox().shown[1].text, "No spaces allowed in Revision");
    EXPECT_EQ(msgBox().shown[2].text, "No spaces allowed in AppName");
    EXPECT_EQ(msgBox().shown[2].title, "Cantovel");
    EXPECT_EQ(Mb::iconOf(msgBox().shown[3].style), 0);
}

// A drive table of fixed letters.
class LetterDrives : public CdDrives {
  public:
    explicit LetterDrives(QString letters) : letters_(std::move(letters)) {}
    QList<CdDrive> Drives() override {
        QList<CdDrive> list;
        for (QChar l : letters_) list.append({l, "drive", "/dev/null"});
        return list;
    }
    QString TrackFolder(QChar) override { return {}; }
    CdDrive DriveOfPath(const QString&) override { return {}; }

  private:
    QString letters_;
};

TEST_F(CdBaseTest, DriveLettersKeepOnlyTheLastHitInTheArray) {
    CdBase& c = make();
    QStringList letters{"untouched"};
    Components::provideService<CdDrives>(std::make_shared<LetterDrives>(""));
    EXPECT_EQ(c.GetCdDriveLetters(letters), 0);
    EXPECT_EQ(letters, QStringList{"untouched"});
    Components::provideService<CdDrives>(std::make_shared<LetterDrives>("DF"));
    EXPECT_EQ(c.GetCdDriveLetters(letters), 2);
    EXPECT_EQ(letters, (QStringList{"", "", "F"}));
}

TEST_F(CdBaseTest, MicrosoftIdIsTheSerialOfTheFirstTrackFile) {
    CdBase& c = make();
    ScopedEnv env;
    const DiscImage disc = DiscImage::buildSeconds(tempDir(), {30, 40});
    env.set("CANTOVEL_CD_IMAGES", disc.cuePath());
    auto drives = std::make_shared<LibcdioCdDrives>();
    Components::provideService<CdDrives>(drives);
    QChar letter;
    for (const CdDrive& d : drives->Drives())
        if (d.Device == disc.cuePath()) letter = d.Letter;
    ASSERT_FALSE(letter.isNull());
    const QString folder = drives->TrackFolder(letter);
    const auto cda = CdaFile::read(folder + "/Track01.cda");
    ASSERT_TRUE(cda);
    EXPECT_EQ(c.GetMSid(QString(letter) + ":\\"), QString::number(cda->Serial, 16).toUpper());
    EXPECT_EQ(c.GetMSid("Q"), "0");
    EXPECT_EQ(c.GetMSid(""), "0");
}

TEST(CdBaseCode, FixedHexCutsOrPads) {
    EXPECT_EQ(FixedHex(0x1a, 4), "001A");
    EXPECT_EQ(FixedHex(0x12345, 4), "2345");
    EXPECT_EQ(FixedHex(0, 2), "00");
}

}  // namespace
}  // namespace cantovel::test
