#include "libCommon/text/UuCode.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/libCommon/PrintText.h"

namespace vrx {

TEST(UuCodeTest, escapesWhatXmlCannotHold) {
    EXPECT_EQ(uuEncode(StringView(u"a\0b", 3), true, true), u"a%u0000b");
    EXPECT_EQ(uuEncode(u"\x1B\x08", true, true), u"%u001B%u0008");
    EXPECT_EQ(uuEncode(u"\uFFFE\uFFFF", true, true), u"%uFFFE%uFFFF");
    EXPECT_EQ(uuEncode(u"\xD800 \xDC00\xD83D", true, true), u"%uD800 %uDC00%uD83D");
    EXPECT_EQ(uuEncode(u"\xD83D\xD83D\xDE00\xDE00", true, true), u"%uD83D\xD83D\xDE00%uDE00");
}

TEST(UuCodeTest, leavesEverythingElse) {
    const String text = u"<a b=\"50%\">\t\r\n%u00 %u00G1 %U0041 %% \x7F ü \U0001F600 \uFFFD\uE000";
    EXPECT_FALSE(needsUuEncode(text));
    EXPECT_EQ(text.uuEncode(true, true), text);
    EXPECT_FALSE(needsUuDecode(text));
    EXPECT_EQ(text.uuDecode(true, true), text);
}

TEST(UuCodeTest, protectsLiteralEscapes) {
    EXPECT_EQ(uuEncode(u"%u0041%uabCD", true, true), u"%u0025u0041%u0025uabCD");
    EXPECT_EQ(uuDecode(u"%u0025u0041", true, true), u"%u0041");
    EXPECT_EQ(uuDecode(u"%u00e9%u00E9", true, true), u"éé");
}

TEST(UuCodeTest, flagsWorkAlone) {
    const String text = u"\x01%u0041";
    EXPECT_EQ(uuEncode(text, false, true), u"\x01%u0025u0041");
    EXPECT_EQ(uuEncode(text, true, false), u"%u0001%u0041");
    EXPECT_EQ(uuEncode(text, false, false), text);
    EXPECT_EQ(uuDecode(u"%u0041%u0025", false, true), u"%u0041%");
    EXPECT_EQ(uuDecode(u"%u0041%u0025", true, false), u"A%");
}

TEST(UuCodeTest, decodingGivesBackEveryText) {
    constexpr char16_t UNITS[] = {u'%', u'%', u'u',  u'u', u'0',   u'4',   u'2',  u'5',
                                  u'f', u'G', u'\n', 1,    0xD800, 0xDC00, 0xFFFF};
    std::minstd_rand random(1);
    for (int round = 0; round < 20000; ++round) {
        String text;
        for (std::size_t left = random() % 40; left > 0; --left) {
            text.append(UNITS[random() % std::size(UNITS)]);
        }
        const String encoded = text.uuEncode(true, true);
        ASSERT_EQ(encoded.uuDecode(true, true), text);
        ASSERT_EQ(encoded != text, needsUuEncode(text));
        for (std::size_t index = 0; index < encoded.size(); ++index) {
            ASSERT_TRUE(isXmlRepresentable(encoded, index));
        }
    }
}

}  // namespace vrx
