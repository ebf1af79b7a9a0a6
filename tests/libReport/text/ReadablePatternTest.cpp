#include "libReport/text/ReadablePattern.h"

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

TEST(ReadablePatternTest, LeavesRegularExpressionsAsTheyAre) {
    EXPECT_EQ(readablePattern(u"^Intel.*$"), "pattern Intel.*");
    EXPECT_EQ(readablePattern(u"^Intel.*"), "pattern ^Intel.*");
    EXPECT_EQ(readablePattern(u"^a|b$"), "pattern ^a|b$");
    EXPECT_EQ(readablePattern(u"\\d+"), "pattern \\d+");
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[low-high]$"), "pattern VRXRRANGE[low-high]");
    EXPECT_EQ(readablePattern(u"^VRXRRANGE[1-2"), "pattern ^VRXRRANGE[1-2");
}

}  // namespace
}  // namespace vrx
