#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/Utilities.h"
#include "support/QtPrinters.h"

using namespace cantovel;

TEST(ConvertSeconds, DigitalTable) {
    // Below three hours every whole second is checked by the test that follows.
    EXPECT_EQ(ConvertSeconds(0, true, false), ":00");
    EXPECT_EQ(ConvertSeconds(36000, true, true), "10:00:00");

    TimeDigits d;
    ConvertSeconds(3907, false, true, &d);
    EXPECT_EQ(d.hours, "01");
    EXPECT_EQ(d.minutes, "05");
    EXPECT_EQ(d.seconds, "07");
}

TEST(ConvertSeconds, WholeSecondsNeverDriftInFloatingPoint) {
    // Each whole second must split exactly, whatever the division leaves in the last bits.
    for (int s = 0; s < 3 * 3600 + 10; ++s) {
        const int h = s / 3600, m = s / 60 % 60, sec = s % 60;
        QString expected = h ? QString::number(h) : QString();
        if (m)
            expected += h ? QStringLiteral(":%1").arg(m, 2, 10, QChar(u'0')) : QString::number(m);
        else if (h)
            expected += QStringLiteral(":00");
        expected += QStringLiteral(":%1").arg(sec, 2, 10, QChar(u'0'));
        ASSERT_EQ(ConvertSeconds(s, true, true), expected) << s;
    }
}

TEST(ConvertSeconds, RoundedSecondsCarryIntoTheMinute) {
    EXPECT_EQ(ConvertSeconds(59.6, true, true), "1:00");
    EXPECT_EQ(ConvertSeconds(59.6, false, true), "1 minute");
    EXPECT_EQ(ConvertSeconds(2.5, true, true), ":02");  // halves go to the even neighbour
    EXPECT_EQ(ConvertSeconds(3.5, true, true), ":04");
}

TEST(ConvertSeconds, WordsShortWhenTogetherLongWhenAlone) {
    EXPECT_EQ(ConvertSeconds(3907, false, true), "1 hr 5 min 7 sec");
    EXPECT_EQ(ConvertSeconds(3907, false, false), "1 h 5 m 7 s");
    EXPECT_EQ(ConvertSeconds(3900, false, true), "1 hr 5 min ");
    EXPECT_EQ(ConvertSeconds(67, false, false), "1 m 7 s");
    EXPECT_EQ(ConvertSeconds(60, false, true), "1 minute");
    EXPECT_EQ(ConvertSeconds(120, false, false), "2 minutes");
    EXPECT_EQ(ConvertSeconds(3600, false, true), "1 hour");
    EXPECT_EQ(ConvertSeconds(7200, false, true), "2 hours");
    EXPECT_EQ(ConvertSeconds(1, false, true), "1 second");
    EXPECT_EQ(ConvertSeconds(45, false, true), "45 seconds");
    EXPECT_EQ(ConvertSeconds(0, false, true), "");
}

TEST(TimeToString, BelowAndFromAnHour) {
    EXPECT_EQ(TimeToString(0), "0:00.000");
    EXPECT_EQ(TimeToString(61001), "1:01.001");
    EXPECT_EQ(TimeToString(754321), "12:34.321");
    EXPECT_EQ(TimeToString(3599999), "59:59.999");
    EXPECT_EQ(TimeToString(3600000), "1:00:00.000");
    EXPECT_EQ(TimeToString(3723004), "1:02:03.004");
    EXPECT_EQ(TimeToString(36000000), "10:00:00.000");
}

TEST(ParsePathParts, QuotedFileWithTwoDots) {
    EXPECT_EQ(ParsePathParts("  \"/music/My Song.live.mp3\" ", "E"), ".mp3");
    const PathParts& r = LastPathParts();
    EXPECT_EQ(r.drive, "");
    EXPECT_EQ(r.path, "/music");
    EXPECT_EQ(r.dir, "/music");
    EXPECT_EQ(r.file, "My Song.live.mp3");
    EXPECT_EQ(r.base, "My Song.live");
    EXPECT_EQ(r.whole, "  \"/music/My Song.live.mp3\" ");

    EXPECT_EQ(ParsePathParts("/music/a.cda", "f"), "a.cda");
    EXPECT_EQ(ParsePathParts("/music/a.cda", "b"), "a");
    EXPECT_EQ(ParsePathParts("/music/a.cda", "l"), "/music");
    EXPECT_EQ(ParsePathParts("/music/a.cda", "x"), "/music");
    EXPECT_EQ(ParsePathParts("/music/a.cda", "d"), "");
    EXPECT_EQ(ParsePathParts("/music/a.cda", "e", false, true, false), "cda");
}

TEST(ParsePathParts, FoldersAndTheRoot) {
    EXPECT_EQ(ParsePathParts("/music/albums/", "p"), "/music/albums");
    EXPECT_EQ(LastPathParts().file, "");
    EXPECT_EQ(ParsePathParts("/music/albums", "p", true), "/music/albums");
    EXPECT_EQ(LastPathParts().file, "");

    EXPECT_EQ(ParsePathParts("/", "p"), "/");
    EXPECT_EQ(LastPathParts().file, "");
    EXPECT_EQ(LastPathParts().ext, "");
    EXPECT_EQ(ParsePathParts("/vmlinuz", "l"), "/");
    EXPECT_EQ(LastPathParts().file, "vmlinuz");
}

TEST(ParsePathParts, OddNamesAndOverwrittenResults) {
    ParsePathParts("/tmp/name.", "e");
    EXPECT_EQ(LastPathParts().ext, "");
    EXPECT_EQ(LastPathParts().base, "name");
    ParsePathParts("song", "f");
    EXPECT_EQ(LastPathParts().path, "");
    EXPECT_EQ(LastPathParts().file, "song");
    EXPECT_EQ(LastPathParts().base, "song");
    EXPECT_EQ(LastPathParts().ext, "");

    // A blank call clears what the last one left.
    EXPECT_EQ(ParsePathParts("   ", "f"), "");
    EXPECT_EQ(LastPathParts().file, "");
    EXPECT_EQ(LastPathParts().path, "");
    EXPECT_EQ(LastPathParts().whole, "   ");
}

TEST(FileAndPathExists, HiddenEntriesFilesAndFolders) {
    QTemporaryDir dir;
    const QString hidden = dir.path() + "/.hidden";
    QFile f(hidden);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    ASSERT_TRUE(QDir(dir.path()).mkdir(".folder"));

    EXPECT_TRUE(FileExists(hidden));
    EXPECT_FALSE(PathExists(hidden));
    EXPECT_TRUE(PathExists(dir.path() + "/.folder"));
    EXPECT_FALSE(FileExists(dir.path() + "/.folder"));
    EXPECT_FALSE(FileExists(dir.path() + "/missing"));
    EXPECT_FALSE(PathExists(dir.path() + "/missing"));
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(PathExists(""));

    // Blanks only is false even when such an entry exists.
    const QString old = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    f.setFileName("   ");
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    ASSERT_TRUE(QDir().mkdir("  "));
    EXPECT_FALSE(FileExists("   "));
    EXPECT_FALSE(PathExists("  "));
    QDir::setCurrent(old);
}

TEST(DiskFreeSpace, BytesKilobytesAndFailure) {
    QTemporaryDir dir;
    const double bytes = DiskFreeSpace(dir.path());
    const double kb = DiskFreeSpace(dir.path(), true);
    ASSERT_GT(bytes, 0);
    // Other programs write meanwhile: compare loosely.
    EXPECT_NEAR(kb * 1024, bytes, 64.0 * 1024 * 1024);
    EXPECT_LT(kb, bytes / 512);
    // A file yet to be written is measured on its folder's file system.
    EXPECT_NEAR(DiskFreeSpace(dir.path() + "/not/yet/out.wav"), bytes, 64.0 * 1024 * 1024);
    EXPECT_EQ(DiskFreeSpace("  "), -1);
}
