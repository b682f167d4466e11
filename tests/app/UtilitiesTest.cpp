// The time texts, path parts, and file and disk queries, case by case.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/Utilities.h"
#include "support/QtPrinters.h"

using namespace cantovel;

TEST(ConvertSeconds, WholeSecondsSplitExactlyAndWordsAreShortTogetherLongAlone) {
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
    const std::tuple<double, bool, bool, const char*> cases[] = {
        {0, true, false, ":00"},
        {36000, true, true, "10:00:00"},
        {59.6, true, true, "1:00"},
        {59.6, false, true, "1 minute"},
        {2.5, true, true, ":02"},
        {3.5, true, true, ":04"},  // halves to the even one
        {3907, false, true, "1 hr 5 min 7 sec"},
        {3907, false, false, "1 h 5 m 7 s"},
        {3900, false, true, "1 hr 5 min "},
        {67, false, false, "1 m 7 s"},
        {120, false, false, "2 minutes"},
        {3600, false, true, "1 hour"},
        {7200, false, true, "2 hours"},
        {1, false, true, "1 second"},
        {45, false, true, "45 seconds"},
        {0, false, true, ""}};
    for (const auto& [seconds, digital, together, text] : cases)
        EXPECT_EQ(ConvertSeconds(seconds, digital, together), text) << seconds;
    TimeDigits d;
    ConvertSeconds(3907, false, true, &d);
    EXPECT_EQ(QStringList({d.hours, d.minutes, d.seconds}), QStringList({"01", "05", "07"}));

    for (const auto& [ms, text] :
         {std::pair{0, "0:00.000"}, std::pair{61001, "1:01.001"}, std::pair{3599999, "59:59.999"},
          std::pair{3600000, "1:00:00.000"}, std::pair{36000000, "10:00:00.000"}})
        EXPECT_EQ(TimeToString(ms), text);
}

TEST(ParsePathParts, QuotedFilesFoldersTheRootAndOddNames) {
    EXPECT_EQ(ParsePathParts("  \"/music/My Song.live.mp3\" ", "E"), ".mp3");
    const PathParts& r = LastPathParts();
    EXPECT_EQ(QStringList({r.drive, r.path, r.dir, r.file, r.base}),
              QStringList({"", "/music", "/music", "My Song.live.mp3", "My Song.live"}));
    EXPECT_EQ(r.whole, "  \"/music/My Song.live.mp3\" ");
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"/music/a.cda", "f", "a.cda"},
        {"/music/a.cda", "b", "a"},
        {"/music/a.cda", "l", "/music"},
        {"/music/a.cda", "x", "/music"},
        {"/music/a.cda", "d", ""},
        {"/music/albums/", "p", "/music/albums"},
        {"/", "p", "/"},
        {"/vmlinuz", "l", "/"},
        {"/tmp/name.", "e", ""},
        {"song", "b", "song"},
        {"   ", "f", ""}};
    for (const auto& [path, part, expected] : cases)
        EXPECT_EQ(ParsePathParts(path, part), expected) << path << " " << part;
    EXPECT_EQ(ParsePathParts("/music/a.cda", "e", false, true, false), "cda");
    EXPECT_EQ(ParsePathParts("/music/albums", "p", true), "/music/albums");
    EXPECT_EQ(LastPathParts().file, "");
    // A blank call clears what the last one left.
    ParsePathParts("song", "f");
    ParsePathParts("   ", "f");
    EXPECT_EQ(LastPathParts().file, "");
    EXPECT_EQ(LastPathParts().whole, "   ");
}

TEST(FileAndPathExists, HiddenEntriesFilesFoldersAndBlanks) {
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
    EXPECT_FALSE(FileExists(dir.path() + "/missing") || PathExists(dir.path() + "/missing"));
    EXPECT_FALSE(FileExists("") || PathExists(""));

    // Blanks only is false even when such an entry exists.
    const QString old = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    f.setFileName("   ");
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    ASSERT_TRUE(QDir().mkdir("  "));
    EXPECT_FALSE(FileExists("   ") || PathExists("  "));
    QDir::setCurrent(old);

    // Free space in bytes or kilobytes, measured on a file's folder; other programs write
    // meanwhile, so compare loosely.
    const double bytes = DiskFreeSpace(dir.path()), kb = DiskFreeSpace(dir.path(), true);
    ASSERT_GT(bytes, 0);
    EXPECT_NEAR(kb * 1024, bytes, 64.0 * 1024 * 1024);
    EXPECT_NEAR(DiskFreeSpace(dir.path() + "/not/yet/out.wav"), bytes, 64.0 * 1024 * 1024);
    EXPECT_EQ(DiskFreeSpace("  "), -1);
}
