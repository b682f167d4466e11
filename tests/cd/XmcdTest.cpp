// The xmcd record: a read answer into CdBase's properties and back into a submission.

#include "cd/CdBase_Code.h"
#include "support/CdBaseFixture.h"

namespace cantovel::test {
namespace {

class XmcdTest : public CdBaseFixture {};

TEST(XmcdText, PullDataJoinsSplitValuesAndKeepsWhatFollows) {
    QString text = "TTITLE1=First half \r\nTTITLE1=second half\r\nEXTD=x\r\n";
    EXPECT_EQ(PullData(text, "TTITLE1="), "First half second half");
    EXPECT_EQ(text, "EXTD=x\r\n");
    QString untouched = "DTITLE=a\r\n";
    EXPECT_EQ(PullData(untouched, "EXTD="), "");
    EXPECT_EQ(untouched, "DTITLE=a\r\n");
    // A key is found inside a line too, and a last line needs no line end.
    QString inLine = "# Revision: 7";
    EXPECT_EQ(PullData(inLine, "Revision:"), " 7");
}

TEST(XmcdText, LinesAndEscapes) {
    EXPECT_EQ(RemoveTopLine("a\r\nb\r\n"), "b\r\n");
    EXPECT_EQ(RemoveTopLine("no end"), "");
    QString text = "one\\ntwo";
    EXPECT_EQ(NewLineFix(text), "one\r\ntwo");
    EXPECT_EQ(text, "one\r\ntwo");
}

TEST(XmcdText, SplitMatchLineKeepsTheTitlesLineEnd) {
    SplitMatchLine("200 misc 0e021a03 Artist / Album\r\n");
    EXPECT_EQ(MatchCategory, "misc");
    EXPECT_EQ(MatchDiscId, "0e021a03");
    EXPECT_EQ(MatchTitle, "Artist / Album\r\n");
}

TEST_F(XmcdTest, ARecordWithoutRevisionOrSlash) {
    CdBase& c = make();
    const QString result = c.ParseReadResponse(
        "210 newage 0e021a03\r\nDTITLE=Just One Title\r\nTTITLE0=a\r\nTTITLE1=b\r\n"
        "EXTD=\r\nEXTT0=\r\nEXTT1=\r\n.\r\n");
    EXPECT_EQ(c.DataRev, 0);
    EXPECT_EQ(c.Category, "newage");
    EXPECT_EQ(c.Title, "Just One Title");
    EXPECT_EQ(c.Artist, "Just One Title");
    EXPECT_EQ(c.CdTitle, "Just One Title");
    EXPECT_EQ(c.Tracks, 2);  // the titles, though the disc has three tracks
    EXPECT_EQ(result, "Just One Title\r\n2\r\na\r\nb");
}

TEST_F(XmcdTest, SlashRulesAndTheListedNamesFollowTheExtendedCount) {
    CdBase& c = make();
    const QString result = c.ParseReadResponse(
        "210 rock 0e021a03\r\n# Revision: 3\r\nDTITLE=Artist   /Xalbum\r\n"
        "TTITLE0=a\r\nTTITLE1=b\r\nTTITLE2=c\r\nEXTT0=first\r\nPLAYORDER=2,1\r\n.\r\n");
    EXPECT_EQ(c.DataRev, 3);
    EXPECT_EQ(c.Artist, "Artist");
    EXPECT_EQ(c.CdTitle, "album");  // the character after the slash is taken for a blank
    EXPECT_EQ(c.PlayOrder, "2,1");
    EXPECT_EQ(c.GetExtTrackData(1), "first");
    EXPECT_EQ(result, "Artist   /Xalbum\r\n3\r\na");
    EXPECT_EQ(c.ParseReadResponse("600 Timeout"), "600 Timeout");
    EXPECT_EQ(c.Category, "rock");
}

TEST_F(XmcdTest, SubmitStringChecksItsDataFirst) {
    CdBase& c = make();
    EXPECT_EQ(c.SubmitString(), "Error: Invalid DataRev number: 0");
    c.DataRev = 1;
    EXPECT_EQ(c.SubmitString(), "Error: Missing Title");
    c.Title = "Whole";
    c.setCommand("Open");
    c.Tracks = 3;
    c.SetSongName(1, "one");
    c.SetSongName(2, "two");
    EXPECT_EQ(c.SubmitString(), "Error: Missing song name on song: 3");
}

TEST_F(XmcdTest, SubmitStringWithOnlyATitle) {
    CdBase& c = make();
    c.DataRev = 2;
    c.Title = "Only Title";
    c.Tracks = 3;
    for (int i = 1; i <= 3; ++i) c.SetSongName(i, QString("Song %1").arg(i));
    c.SetExtTrackData(2, "ext two");
    c.ExtData = "disc ext";
    c.setCommand("Open");
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
