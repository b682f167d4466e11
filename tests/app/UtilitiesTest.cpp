// The runtime conversions, the time texts, path parts, and file and disk queries: one row
// for each way through them.
#include <gtest/gtest.h>

#include <cmath>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/Runtime.h"
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
        {59.6, true, true, "1:00"},
        {2.5, true, true, ":02"},  // halves to the even one
        {3907, false, true, "1 hr 5 min 7 sec"},
        {3907, false, false, "1 h 5 m 7 s"},
        {120, false, false, "2 minutes"},
        {3600, false, true, "1 hour"},
        {0, false, true, ""}};
    for (const auto& [seconds, digital, together, text] : cases)
        EXPECT_EQ(ConvertSeconds(seconds, digital, together), text) << seconds;
    TimeDigits d;
    ConvertSeconds(3907, false, true, &d);
    EXPECT_EQ(QStringList({d.hours, d.minutes, d.seconds}), QStringList({"01", "05", "07"}));

    for (const auto& [ms, text] : {std::pair{61001, "1:01.001"}, std::pair{3599999, "59:59.999"},
                                   std::pair{3600000, "1:00:00.000"}})
        EXPECT_EQ(TimeToString(ms), text);
}

TEST(ParsePathParts, QuotedFilesFoldersTheRootAndOddNames) {
    EXPECT_EQ(ParsePathParts("  \"/music/My Song.live.mp3\" ", "E"), ".mp3");
    const PathParts& r = LastPathParts();
    EXPECT_EQ(QStringList({r.drive, r.path, r.dir, r.file, r.base}),
              QStringList({"", "/music", "/music", "My Song.live.mp3", "My Song.live"}));
    EXPECT_EQ(r.whole, "  \"/music/My Song.live.mp3\" ");
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"/music/a.cda", "d", ""},
        {"/music/albums/", "p", "/music/albums"},
        {"/vmlinuz", "l", "/"},
        {"/tmp/name.", "e", ""},
        {"song", "b", "song"}};
    for (const auto& [path, part, expected] : cases)
        EXPECT_EQ(ParsePathParts(path, part), expected) << path << " " << part;
    EXPECT_EQ(ParsePathParts("/music/a.cda", "e", false, true, false), "cda");
    EXPECT_EQ(ParsePathParts("/music/albums", "p", true), "/music/albums");
    EXPECT_EQ(LastPathParts().file, "");
    // A blank call clears what the last one left.
    EXPECT_EQ(ParsePathParts("song", "f"), "song");
    EXPECT_EQ(ParsePathParts("   ", "f"), "");
    EXPECT_EQ(LastPathParts().file, "");
    EXPECT_EQ(LastPathParts().whole, "   ");
}

TEST(FileAndPathExists, HiddenEntriesFilesFoldersAndBlanks) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkdir(".folder"));
    EXPECT_TRUE(PathExists(dir.path() + "/.folder"));
    EXPECT_FALSE(FileExists(dir.path() + "/.folder"));

    // Blanks only is false even when such an entry exists.
    const QString old = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(dir.path()));
    QFile f("   ");
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

TEST(Runtime, ValReadsTheLeadingNumber) {
    EXPECT_EQ(Val("9pt"), 9);
    EXPECT_EQ(Val("  -12.5e1abc"), -125);
    EXPECT_EQ(Val("1 2 3"), 123);
    EXPECT_EQ(Val("3.1.4"), 3.1);
    EXPECT_EQ(Val("&HFF"), 255);
    EXPECT_EQ(Val("&HFFFF"), -1);
    // Far too many digits for 64 bits: a large number, not an overflow.
    EXPECT_DOUBLE_EQ(Val("&O" + QString(30, u'7')), std::pow(8.0, 30) - 1);
}

TEST(Runtime, ConversionsRoundHalvesToEvenAndKeepToTheirRange) {
    EXPECT_EQ(CBool("true"), true);
    EXPECT_EQ(CBool("2.5"), true);
    EXPECT_FALSE(CBool("maybe").has_value());
    EXPECT_EQ(CBool(CStr(false)), false);

    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(Int(-1.5), -2);
    // Past the 64-bit range the ends hold; nothing is undefined.
    EXPECT_EQ(CInt(1e300), std::numeric_limits<qint64>::max());
    EXPECT_EQ(Int(-1e300), std::numeric_limits<qint64>::min());
    EXPECT_EQ(CInt(std::nan("")), 0);

    EXPECT_EQ(CByte(255.4), 255);
    for (double v : {-5.0, 255.5, std::nan("")}) EXPECT_FALSE(CByte(v).has_value()) << v;
    EXPECT_EQ(CInt16(-32768), -32768);
    EXPECT_FALSE(CLng(2147483648.0).has_value());
}

TEST(Runtime, FormatPatterns) {
    EXPECT_EQ(Format(5, "000"), "005");
    EXPECT_EQ(Format(5, "0#"), "05");
    EXPECT_EQ(Format(42.456, "0.00 MB"), "42.46 MB");
    EXPECT_EQ(Format(-1.5, "0.0"), "-1.5");
    // Exact for every 32-bit value, and halves away from zero in decimal.
    EXPECT_EQ(Format(4294967295.0, "0"), "4294967295");
    EXPECT_EQ(Format(2.675, "0.00"), "2.68");
    EXPECT_EQ(Format(9.995, "0.00"), "10.00");
    EXPECT_EQ(Format(0.005, "0.00"), "0.01");
    EXPECT_EQ(Format(-0.004, "0.00"), "0.00");
    EXPECT_EQ(Format(1e300, "0").size(), 301);
}

TEST(Runtime, HexAndRandom) {
    EXPECT_EQ(Hex(0xCBF43926u), "CBF43926");
    // A seed gives the same numbers again, each in [0, 1).
    Randomize(42);
    const double first = Rnd();
    Randomize(42);
    EXPECT_EQ(Rnd(), first);
    EXPECT_TRUE(first >= 0 && first < 1);
}
