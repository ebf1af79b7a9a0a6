#include "libCommon/text/String.h"

#include <gtest/gtest.h>

#include <set>

#include "libCommon/error/StructuredException.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

TEST(StringTest, replacesLeftToRightWithoutReadingItsOwnOutput) {
    EXPECT_EQ(String(u"aaa").replace(u"a", u"aa"), u"aaaaaa");
    EXPECT_EQ(String(u"ababa").replace(u"aba", u"x"), u"xba");
    EXPECT_EQ(String(u"a.b.c").replace(u".", u""), u"abc");
    EXPECT_EQ(String(u"abc").replace(u"", u"x"), u"abc");
    EXPECT_EQ(String().replace(u"a", u"b"), u"");
}

TEST(StringTest, trimsAllWhiteSpaceAtTheEndsOnly) {
    EXPECT_EQ(String(u" \t\r\n\v\fa b \t\r\n\v\f").trim(), u"a b");
    EXPECT_EQ(String(u"ab").trim(), u"ab");
    EXPECT_EQ(String(u" \n ").trim(), u"");
    EXPECT_EQ(String(u"\u00A0a").trim(), u"\u00A0a");  // a no-break space is text
    EXPECT_EQ(trimmed(u"\ta "), u"a");
}

TEST(StringTest, removesWithinBounds) {
    EXPECT_EQ(String(u"abcdef").remove(1, 2), u"adef");
    EXPECT_EQ(String(u"abc").remove(1, 99), u"a");
    EXPECT_THROW(String(u"abc").remove(4, 1), StructuredException);
    EXPECT_THROW(String(u"abc")[3], StructuredException);
}

TEST(StringTest, readsBooleansAndRealsOfTheWholeTrimmedText) {
    for (const String text : {u"true", u" TRUE\n", u"1", u"Yes", u"oN"}) {
        EXPECT_TRUE(text.strToBoolean()) << text.toUtf8();
    }
    for (const String text : {u"", u"false", u"0", u"2", u"11", u"t", u"true."}) {
        EXPECT_FALSE(text.strToBoolean()) << text.toUtf8();
    }
    bool isNumber = false;
    EXPECT_EQ(String(u" -2.5e3\t").strToReal64(&isNumber), -2500);
    EXPECT_TRUE(isNumber);
    EXPECT_EQ(String(u"3 MHz").strToReal64(&isNumber), 0);
    EXPECT_FALSE(isNumber);
    EXPECT_EQ(String(u" ").strToReal64(), 0);
}

TEST(StringTest, hashesDifferForTextsThatDifferLittle) {
    std::set<std::size_t> hashes;
    std::size_t count = 0;
    for (std::size_t length = 0; length <= 40; ++length) {
        const String zeros(length, u'\0');
        hashes.insert(hashOf(zeros));
        ++count;
        for (std::size_t at = 0; at < length; ++at) {
            for (const char16_t unit : {u'\x01', u'\x02', u'\x8000'}) {
                std::u16string text = zeros.raw();
                text[at] = unit;
                hashes.insert(hashOf(text));
                ++count;
            }
        }
    }
    EXPECT_EQ(hashes.size(), count);
}

TEST(StringTest, hashKnowsNoTextsThatWereMadeToCollide) {
    // With the constants of a multiply-and-fold hash for its first four units, the product is 0 whatever the next say.
    std::set<std::size_t> hashes;
    for (char16_t unit = u'A'; unit < u'A' + 1000; ++unit) {
        const String text = concat(u"\uED03\uD192\u4A32\uD1B5", String(4, unit), u"the same end");
        hashes.insert(hashOf(text));
        hashes.insert(hashOf(text.toUtf8()));
    }
    EXPECT_EQ(hashes.size(), 2000U);
}

TEST(StringTest, hashDependsOnTheTextAloneAndSpreadsOverAllBits) {
    const String twice = u"Processor:1Processor:1Processor:1";
    EXPECT_EQ(hashOf(twice.view().substr(0, 11)), hashOf(twice.view().substr(11, 11)));

    std::set<std::size_t> low;
    std::set<std::size_t> high;
    for (char16_t unit = 0; unit < 4096; ++unit) {
        const std::size_t hash = hashOf(StringView(&unit, 1));
        low.insert(hash & 0xFFFF);
        high.insert(hash >> 48);
    }
    // 4096 balls thrown at random into 65536 boxes hit about 3970 of them.
    EXPECT_GT(low.size(), 3850U);
    EXPECT_GT(high.size(), 3850U);
}

}  // namespace vrx
