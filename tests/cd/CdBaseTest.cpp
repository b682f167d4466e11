// CdBase without a server: disc identity, positions, play, status words, the greeting's
// properties, and the xmcd record read into its properties and written back for submission.

#include "cd/CdBase_Code.h"
#include "platform/cddrives/CdaFile.h"
#include "platform/cddrives/LibcdioCdDrives.h"
#include "support/CdBaseFixture.h"
#include "support/DiscImage.h"
#include "support/ScopedEnv.h"

namespace cantovel::test {
namespace {

class CdBaseTest : public CdBaseFixture {};

TEST_F(CdBaseTest, DiscIdsOfExampleDiscsAndNone) {
    CdBase& c = make();
    // A closed device is opened for the ID and closed again.
    EXPECT_EQ(c.Cdid(), "0e021a03");
    EXPECT_EQ(mci->commands, (QStringList{"Open", "Close"}));
    EXPECT_EQ(c.DiscLength, 538);
    EXPECT_EQ(c.SongLength(2, false), 2 * 60 + 49);  // 2:49.70, the frames dropped
    EXPECT_EQ(c.SongLength(4, false), 0);
    EXPECT_EQ(c.GetQueryString(), "0e021a03 3 150 15010 27755 538");
    // Seventeen tracks whose start seconds each have the digit sum 15: the sum wraps to 00.
    QList<qint64> starts;
    for (int s : {69, 78, 87, 96, 159, 168, 177, 186, 195, 249, 258, 267, 276, 285, 294, 339, 348})
        starts << s * 75;
    mci->setDisc(starts, 400 * 75);
    EXPECT_EQ(c.Cdid(), "00014b11");

    // An open device stays open; without a disc the ID is empty and nothing is shown.
    mci->commands.clear();
    c.setCommand("open");
    EXPECT_EQ(c.Command(), "open");
    EXPECT_EQ(mci->deviceType(), "CDAudio");
    mci->setDisc({}, 0);
    c.DiscLength = 77;
    EXPECT_EQ(c.Cdid(), "");
    EXPECT_EQ(c.LastError().Description, "No Audio CD found");
    EXPECT_EQ(c.LastError().Number, 0x8004025Au);
    EXPECT_FALSE(mci->commands.contains("Close"));
    EXPECT_EQ(c.DiscLength, 77);
    EXPECT_TRUE(msgBox().shown.isEmpty());

    // A device that will not open.
    c.setCommand("Close");
    mci->setDisc({150, 15010, 27755}, 40500);
    mci->canOpen = false;
    c.setCommand("Open");
    EXPECT_EQ(c.LastError().Description, "Unable to open device");
    EXPECT_EQ(c.LastError().Source, "Cddb Control");
    EXPECT_EQ(c.Cdid(), "");
    EXPECT_EQ(c.CurrentTrack(), 0);
}

TEST_F(CdBaseTest, PositionsPlayAndStatusWords) {
    CdBase& c = make();
    QStringList words;
    QObject::connect(&c, &CdBase::ModeChange, [&](const QString& w) { words << w; });
    mci->tick();
    c.setCommand("Open");
    mci->tick();
    mci->tick();  // no change, no word
    mci->position = 150 + 65 * 75 + 3;
    const QStringList positions{QString::number(1 + 5 * 256 + 3 * 65536),
                                QString::number(65 * 75 + 3), "65", "1:05", ""};
    for (int format = 1; format <= 5; ++format)
        EXPECT_EQ(c.Position(format), positions[format - 1]) << format;
    // The current track at a boundary is the later track; the lead-in has none.
    for (const auto& [at, track] : {std::pair{15010, 2}, {15009, 1}, {100, 0}}) {
        mci->position = at;
        EXPECT_EQ(c.CurrentTrack(), track) << at;
    }

    c.PlayTrack(2);
    EXPECT_EQ(mci->from, 15010);
    EXPECT_EQ(mci->to, 27755);
    mci->tick();
    const QStringList before = mci->commands;
    c.PlayTrack(4);  // too high: nothing
    c.setCurrentTrack(4);
    EXPECT_EQ(mci->commands, before);
    c.setCurrentTrack(3);
    EXPECT_EQ(mci->commands.last(), "Stop");
    c.setCommand("PLAY");  // the next play starts where the track was set
    EXPECT_EQ(mci->from, 27755);
    c.setCommand("Eject");
    mci->tick();
    mci->mode = 999;
    mci->tick();
    EXPECT_EQ(words, (QStringList{"Device is not open", "Device is stopped", "Device is playing",
                                  "Tray is out", ""}));
}

TEST_F(CdBaseTest, GreetingPropertiesRefuseBlanksAndTheTimeOutIsClamped) {
    CdBase& c = make();
    EXPECT_EQ(c.Timer1.interval(), 30000);
    for (const auto& [set, read] : {std::pair{100, 5000}, {70000, 65535}, {30000, 30000}}) {
        c.setConnectTimeout(set);
        EXPECT_EQ(c.ConnectTimeout(), read);
        EXPECT_EQ(c.Timer1.interval(), read);
    }
    c.setEmail("me@here");
    c.setEmail("me @here");
    c.setRevision("2 0");
    c.setAppName("My App");
    c.setHostName("my host");
    EXPECT_EQ(c.Email() + c.Revision() + c.AppName() + c.HostName(), "me@here1.0ActiveX");
    EXPECT_EQ(msgBox().texts(),
              (QStringList{"No spaces allowed in Email", "No spaces allowed in Revision",
                           "No spaces allowed in AppName", "No spaces allowed in HostName"}));
    EXPECT_EQ(msgBox().shown[0].title, "Cddb Control Error");
    EXPECT_EQ(Mb::iconOf(msgBox().shown[0].style), Mb::Critical);
    EXPECT_EQ(msgBox().shown[2].title, "Cantovel");
    EXPECT_EQ(Mb::iconOf(msgBox().shown[3].style), 0);
    EXPECT_EQ(FixedHex(0x1a, 4) + FixedHex(0x12345, 4) + FixedHex(0, 2), "001A234500");
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

TEST_F(CdBaseTest, DriveLettersAndTheMicrosoftIdOfAnImage) {
    CdBase& c = make();
    QStringList letters{"untouched"};
    Components::provideService<CdDrives>(std::make_shared<LetterDrives>(""));
    EXPECT_EQ(c.GetCdDriveLetters(letters), 0);
    EXPECT_EQ(letters, QStringList{"untouched"});
    Components::provideService<CdDrives>(std::make_shared<LetterDrives>("DF"));
    EXPECT_EQ(c.GetCdDriveLetters(letters), 2);
    EXPECT_EQ(letters, (QStringList{"", "", "F"}));  // only the last hit is kept

    // The Microsoft ID is the serial of the first track file.
    ScopedEnv env;
    const DiscImage disc = DiscImage::buildSeconds(tempDir(), {30, 40});
    env.set("CANTOVEL_CD_IMAGES", disc.cuePath());
    auto drives = std::make_shared<LibcdioCdDrives>();
    Components::provideService<CdDrives>(drives);
    QChar letter;
    for (const CdDrive& d : drives->Drives())
        if (d.Device == disc.cuePath()) letter = d.Letter;
    ASSERT_FALSE(letter.isNull());
    const auto cda = CdaFile::read(drives->TrackFolder(letter) + "/Track01.cda");
    ASSERT_TRUE(cda);
    EXPECT_EQ(c.GetMSid(QString(letter) + ":\\"), QString::number(cda->Serial, 16).toUpper());
    EXPECT_EQ(c.GetMSid("Q") + c.GetMSid(""), "00");
}

TEST(XmcdText, PullingSplittingAndEscapes) {
    QString text = "TTITLE1=First half \r\nTTITLE1=second half\r\nEXTD=x\r\n";
    EXPECT_EQ(PullData(text, "TTITLE1="), "First half second half");
    EXPECT_EQ(text, "EXTD=x\r\n");
    EXPECT_EQ(PullData(text, "DTITLE="), "");
    EXPECT_EQ(text, "EXTD=x\r\n");
    QString inLine = "# Revision: 7";  // inside a line, and no line end needed
    EXPECT_EQ(PullData(inLine, "Revision:"), " 7");
    EXPECT_EQ(RemoveTopLine("a\r\nb\r\n"), "b\r\n");
    EXPECT_EQ(RemoveTopLine("no end"), "");
    QString escaped = "one\\ntwo";
    EXPECT_EQ(NewLineFix(escaped), "one\r\ntwo");
    EXPECT_EQ(escaped, "one\r\ntwo");
    SplitMatchLine("200 misc 0e021a03 Artist / Album\r\n");
    EXPECT_EQ(MatchCategory + "|" + MatchDiscId + "|" + MatchTitle,
              "misc|0e021a03|Artist / Album\r\n");
}

TEST_F(CdBaseTest, ReadRecordsFillTheProperties) {
    CdBase& c = make();
    EXPECT_EQ(c.ParseReadResponse("210 newage 0e021a03\r\nDTITLE=Just One Title\r\nTTITLE0=a\r\n"
                                  "TTITLE1=b\r\nEXTD=\r\nEXTT0=\r\nEXTT1=\r\n.\r\n"),
              "Just One Title\r\n2\r\na\r\nb");
    EXPECT_EQ(c.DataRev, 0);
    EXPECT_EQ(c.Category, "newage");
    EXPECT_EQ(c.Title + "|" + c.Artist + "|" + c.CdTitle,
              "Just One Title|Just One Title|Just One Title");
    EXPECT_EQ(c.Tracks, 2);  // the titles, though the disc has three tracks

    // The character after the slash is taken for a blank; the list follows the EXTT count.
    EXPECT_EQ(c.ParseReadResponse(
                  "210 rock 0e021a03\r\n# Revision: 3\r\nDTITLE=Artist   /Xalbum\r\nTTITLE0=a\r\n"
                  "TTITLE1=b\r\nTTITLE2=c\r\nEXTT0=first\r\nPLAYORDER=2,1\r\n.\r\n"),
              "Artist   /Xalbum\r\n3\r\na");
    EXPECT_EQ(c.DataRev, 3);
    EXPECT_EQ(c.Artist + "|" + c.CdTitle + "|" + c.PlayOrder, "Artist|album|2,1");
    EXPECT_EQ(c.GetExtTrackData(1), "first");
    EXPECT_EQ(c.ParseReadResponse("600 Timeout"), "600 Timeout");
    EXPECT_EQ(c.Category, "rock");
}

TEST_F(CdBaseTest, SubmitStringChecksItsDataAndWritesTheRecord) {
    CdBase& c = make();
    EXPECT_EQ(c.SubmitString(), "Error: Invalid DataRev number: 0");
    c.DataRev = 2;
    EXPECT_EQ(c.SubmitString(), "Error: Missing Title");
    c.Title = "Only Title";
    c.setCommand("Open");
    c.Tracks = 3;
    c.SetSongName(1, "Song 1");
    c.SetSongName(2, "Song 2");
    EXPECT_EQ(c.SubmitString(), "Error: Missing song name on song: 3");
    c.SetSongName(3, "Song 3");
    c.SetExtTrackData(2, "ext two");
    c.ExtData = "disc ext";
    EXPECT_EQ(c.SubmitString(),
              "# xmcd\r\n#\r\n# Track frame offsets:\r\n# 150\r\n# 15010\r\n# 27755\r\n#\r\n"
              "# Disc length: 540 Seconds\r\n#\r\n# Revision: 2\r\n"
              "# Submitted via: ActiveX 1.0\r\n#\r\nDISCID=0e021a03\r\nDTITLE=Only Title\r\n"
              "TTITLE0=Song 1\r\nTTITLE1=Song 2\r\nTTITLE2=Song 3\r\nEXTD=disc ext\r\n"
              "EXTT0=\r\nEXTT1=ext two\r\nEXTT2=\r\nPLAYORDER=\r\n");
    c.Artist = "A";
    c.CdTitle = "B";
    EXPECT_TRUE(c.SubmitString().contains("\r\nDTITLE=A / B\r\n"));
}

}  // namespace
}  // namespace cantovel::test
