#include "libReport/patterns/ReadablePattern.h"

#include <gtest/gtest.h>

namespace vrx {
namespace {

TEST(ReadablePatternTest, IsWhatAPersonWouldWrite) {
    EXPECT_EQ(readablePattern(u"^2\\.1\\.0 \\(rev\\. B\\)$"), "2.1.0 (rev. B)");
    EXPECT_EQ(readablePattern(u"plain"), "plain");
    EXPECT_EQ(readablePattern(u"^5\\$$"), "5$");
    EXPECT_EQ(readablePattern(u"^2\\.16\\."), "begins with 2.16.");
    EXPECT_EQ(readablePattern(u"16$"), "ends with 16");
    EXPECT_EQ(readablePattern(u"^C:\\\\$"), "C:\\");
    EXPECT_EQ(readablePattern(u"^$"), "\"\"");
    EXPECT_EQ(readablePattern(u"^a\tb$"), "a\\tb");
}

TEST(ReadablePatternTest, ShowsRangesLowBoundFirst) {
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[2900-3100] MHz$"), "2900..3100 MHz");
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[-9--11]$"), "-11..-9");
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[-5-10] degC$"), "-5..10 degC");
    EXPECT_EQ(readablePattern(u"^x VRXRRANGE[1-2], VRXRRANGE[3-4]$"), "x 1..2, 3..4");
}

TEST(ReadablePatternTest, SaysWhatAlternativesMean) {
    EXPECT_EQ(readablePattern(u"^Intel.*$"), "begins with Intel");
    EXPECT_EQ(readablePattern(u"^(DDR4|DDR5)$"), "DDR4 or DDR5");
    EXPECT_EQ(readablePattern(u"^(X\\(R\\) 9\\|1|X\\\\)$"), "X(R) 9|1 or X\\");
    EXPECT_EQ(readablePattern(u"^(a\\)$"), "pattern (a\\)");
    EXPECT_EQ(readablePattern(u"^(1[6-9]|[2-9]\\d|\\d{3,})$"), "at least 16");
    EXPECT_EQ(readablePattern(u"^([4-9]|1[0-6])$"), "4..16");
    EXPECT_EQ(readablePattern(u"^(2\\.(1[4-9]|[2-9]\\d)|[3-9]|\\d\\d)\\."), "at least 2.14");
    EXPECT_EQ(readablePattern(u"^2\\.[1-9]"), "at least 2.1, below 3");
    EXPECT_EQ(readablePattern(u"^[3-57]$"), "pattern [3-57]");
}

TEST(ReadablePatternTest, LeavesRegularExpressionsAsTheyAre) {
    EXPECT_EQ(readablePattern(u"^In.el.*$"), "pattern In.el.*");
    EXPECT_EQ(readablePattern(u"^(1[6-9]|2)x$"), "pattern ^(1[6-9]|2)x$");
    EXPECT_EQ(readablePattern(u"^a|b$"), "pattern ^a|b$");
    EXPECT_EQ(readablePattern(u"\\d+"), "pattern \\d+");
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[low-high]$"), "pattern VRXRRANGE[low-high]");
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[1-2"), "pattern ^VRXRRANGE[1-2");
}

}  // namespace
}  // namespace vrx
