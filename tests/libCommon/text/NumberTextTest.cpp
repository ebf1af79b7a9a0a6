#include "libCommon/text/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>

#include "tests/libCommon/PrintText.h"

namespace vrx {

TEST(NumberTextTest, printsDoublesShortAndPlain) {
    EXPECT_EQ(toText(2700.0), u"2700");
    EXPECT_EQ(toText(0.5), u"0.5");
    EXPECT_EQ(toText(2999.7), u"2999.7");
    EXPECT_EQ(toText(-0.1 - 0.2), u"-0.30000000000000004");
    EXPECT_EQ(toText(0.0), u"0");
    EXPECT_EQ(toText(-0.0), u"0");
}

TEST(NumberTextTest, usesExponentsOnlyOutsideThePlainRange) {
    EXPECT_EQ(toText(1e-5), u"0.00001");
    EXPECT_EQ(toText(9.9e-6), u"9.9e-06");
    EXPECT_EQ(toText(9999999999999998.0), u"9999999999999998");
    EXPECT_EQ(toText(-1e16), u"-1e+16");
}

TEST(NumberTextTest, doublesReadBackToTheSameValue) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 20000; ++round) {
        const double number = std::bit_cast<double>(random());
        if (number - number == 0) {
            ASSERT_EQ(parseReal(toText(number)), number);
        }
    }
}

TEST(NumberTextTest, readsDecimalRealsOnly) {
    EXPECT_EQ(parseReal(u"+5"), 5);
    EXPECT_EQ(parseReal(u"5."), 5);
    EXPECT_EQ(parseReal(u"-.5E+2"), -50);
    EXPECT_EQ(parseReal(String(100, u'0') + u"1"), 1);
    for (const String text : {u"", u"+", u"-", u".", u"e5", u"1e", u" 1", u"1 ", u"1,5", u"0x10", u"inf", u"nan",
                              u"1.2.3", u"+-1", u"++1", u"\u0661", u"\u0131", u"1e999", u"1\u0100"}) {
        EXPECT_EQ(parseReal(text), std::nullopt) << text.toUtf8();
    }
}

TEST(NumberTextTest, readsAndPrintsIntegersThatFit) {
    EXPECT_EQ(toText(std::numeric_limits<std::uint64_t>::max()), u"18446744073709551615");
    EXPECT_EQ(toText(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
    EXPECT_EQ(parseInteger(u"-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(parseInteger(u"+007"), 7);
    for (const String text : {u"9223372036854775808", u"1.0", u"1e2", u"", u"-"}) {
        EXPECT_EQ(parseInteger(text), std::nullopt) << text.toUtf8();
    }
}

}  // namespace vrx
