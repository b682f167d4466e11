#include <gtest/gtest.h>
#include <cmath>

#include "app/Runtime.h"
#include "support/QtPrinters.h"

using namespace cantovel;

TEST(Runtime, ValReadsTheLeadingNumber) {
    EXPECT_EQ(Val("9pt"), 9);
    EXPECT_EQ(Val("x"), 0);
    EXPECT_EQ(Val("  -12.5e1abc"), -125);
    EXPECT_EQ(Val("1 2 3"), 123);
    EXPECT_EQ(Val("&HFF"), 255);
    EXPECT_EQ(Val("&HFFFF"), -1);
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("3.1.4"), 3.1);
    // Far too many digits for 64 bits: a large number, not an overflow.
    EXPECT_DOUBLE_EQ(Val("&O" + QString(30, u'7')), std::pow(8.0, 30) - 1);
    EXPECT_GT(Val("&H" + QString(20, u'F')), 1e24);
}

TEST(Runtime, BooleanTexts) {
    EXPECT_EQ(CBool("True"), true);
    EXPECT_EQ(CBool("false"), false);
    EXPECT_EQ(CBool("-1"), true);
    EXPECT_EQ(CBool("0"), false);
    EXPECT_EQ(CBool("2.5"), true);
    EXPECT_FALSE(CBool("maybe").has_value());
    EXPECT_FALSE(CBool("").has_value());
    EXPECT_EQ(CStr(true), "True");
    EXPECT_EQ(CBool(CStr(false)), false);
}

TEST(Runtime, RoundingHalvesToEvenAndFloor) {
    EXPECT_EQ(CInt(2.5), 2);
    EXPECT_EQ(CInt(3.5), 4);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(2.6), 3);
    EXPECT_EQ(Int(-1.5), -2);
    EXPECT_EQ(Int(1.999), 1);
    // Past the 64-bit range the ends hold; nothing is undefined.
    EXPECT_EQ(CInt(1e300), std::numeric_limits<qint64>::max());
    EXPECT_EQ(Int(-1e300), std::numeric_limits<qint64>::min());
    EXPECT_EQ(CInt(std::nan("")), 0);
}

TEST(Runtime, NarrowConversionsRaiseOverflowOutOfRange) {
    EXPECT_EQ(CByte(255.4), 255);
    EXPECT_EQ(CByte(-0.4), 0);
    for (double v : {300.0, -5.0, 255.5, std::nan(""), 1e308})
        EXPECT_FALSE(CByte(v).has_value()) << v;
    EXPECT_EQ(CInt16(-32768), -32768);
    EXPECT_FALSE(CInt16(32768).has_value());
    EXPECT_EQ(CLng(2147483647), 2147483647);
    EXPECT_FALSE(CLng(2147483648.0).has_value());
    EXPECT_FALSE(CLng(1e308 / 15).has_value());
}

TEST(Runtime, FormatPatterns) {
    EXPECT_EQ(Format(5, "000"), "005");
    EXPECT_EQ(Format(1234, "000"), "1234");
    EXPECT_EQ(Format(7, "00"), "07");
    EXPECT_EQ(Format(0, "0"), "0");
    EXPECT_EQ(Format(2.5, "0"), "3");
    EXPECT_EQ(Format(1.25, "0.0"), "1.3");
    EXPECT_EQ(Format(0.05, "0.0"), "0.1");
    EXPECT_EQ(Format(3, "0.00 MB"), "3.00 MB");
    EXPECT_EQ(Format(42.456, "0.00 MB"), "42.46 MB");
    EXPECT_EQ(Format(5, "0#"), "05");
    EXPECT_EQ(Format(12, "0#"), "12");
    EXPECT_EQ(Format(-1.5, "0.0"), "-1.5");
    // Exact for every 32-bit value, and halves away from zero in decimal.
    EXPECT_EQ(Format(4294967295.0, "0"), "4294967295");
    EXPECT_EQ(Format(500000000, "0"), "500000000");
    EXPECT_EQ(Format(-2147483648.0, "0"), "-2147483648");
    EXPECT_EQ(Format(4294967295.0, "0.00"), "4294967295.00");
    EXPECT_EQ(Format(2.675, "0.00"), "2.68");
    EXPECT_EQ(Format(0.005, "0.00"), "0.01");
    EXPECT_EQ(Format(9.995, "0.00"), "10.00");
    EXPECT_EQ(Format(-0.004, "0.00"), "0.00");
    EXPECT_EQ(Format(1e300, "0").size(), 301);
}

TEST(Runtime, HexAndRandom) {
    EXPECT_EQ(Hex(0xCBF43926u), "CBF43926");
    EXPECT_EQ(Hex(0), "0");
    Randomize(42);
    double lo = 1, hi = 0;
    for (int i = 0; i < 10000; ++i) {
        double r = Rnd();
        ASSERT_GE(r, 0.0);
        ASSERT_LT(r, 1.0);
        lo = std::min(lo, r);
        hi = std::max(hi, r);
    }
    EXPECT_LT(lo, 0.01);
    EXPECT_GT(hi, 0.99);
}
