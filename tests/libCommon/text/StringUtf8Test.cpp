#include <gtest/gtest.h>

#include "libCommon/text/String.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

struct Damaged {
    std::string bytes;
    String text;
    std::size_t count;
};

}  // namespace

TEST(StringUtf8Test, carriesEveryCharacterThereAndBack) {
    for (char32_t point = 0; point <= 0x10FFFF; point += point < 0x3000 ? 1 : 61) {
        if (point >= 0xD800 && point < 0xE000) {
            continue;
        }
        std::u16string units;
        if (point < 0x10000) {
            units = {static_cast<char16_t>(point)};
        } else {
            units = {static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)),
                     static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF))};
        }
        const std::string bytes = toUtf8(units);
        EXPECT_EQ(bytes.size(), point < 0x80 ? 1U : point < 0x800 ? 2U : point < 0x10000 ? 3U : 4U);
        Utf8Damage damage;
        ASSERT_EQ(String::UTF8Decode("x" + bytes + "y", &damage).view(), u"x" + units + u"y");
        ASSERT_EQ(damage.count, 0U);
    }
    EXPECT_EQ(toUtf8(u"aé€\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(StringUtf8Test, findsWhatIsNoAsciiAtEveryPlaceOfItsBlocks) {
    for (std::size_t length = 0; length < 100; ++length) {
        for (const std::size_t at : {std::size_t{0}, length / 3, length}) {
            const std::string bytes = std::string(at, 'a') + "\xC3\xA9" + std::string(length - at, 'b');
            const String text = String(at, u'a') + u"é" + String(length - at, u'b');
            ASSERT_EQ(String::UTF8Decode(bytes), text);
            ASSERT_EQ(text.toUtf8(), bytes);
        }
    }
}

TEST(StringUtf8Test, replacesEachMaximalInvalidSequence) {
    const Damaged cases[] = {
        {"a\x80z", u"a\uFFFDz", 1},
        {"\xC0\x80", u"\uFFFD\uFFFD", 2},                      // overlong
        {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD", 3},            // overlong
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", 3},            // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", 4},  // above U+10FFFF
        {"\xF5\xFF", u"\uFFFD\uFFFD", 2},
        {"\xE2\x82z", u"\uFFFDz", 1},
        {"\xF0\x9F\x98", u"\uFFFD", 1},
        {"\xC3", u"\uFFFD", 1},
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", u"\uFFFD\uFFFD\uFFFD\uFFFDA", 4},
    };
    for (const Damaged& damaged : cases) {
        Utf8Damage damage;
        EXPECT_EQ(String::UTF8Decode(damaged.bytes, &damage), damaged.text);
        EXPECT_EQ(damage.count, damaged.count) << damaged.text.toUtf8();
    }
    EXPECT_EQ(String::UTF8Decode("\xEF\xBB\xBF\xEF\xBB\xBF"), u"\uFEFF");  // one byte-order mark is dropped
    EXPECT_EQ(toUtf8(u"a\xD800z\xDC00"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
}

TEST(StringUtf8Test, tellsWhereTheFirstDamageIs) {
    Utf8Damage damage;
    String::UTF8Decode("\xEF\xBB\xBF\r\n\r\n\tab\r\xF0\x9F\x98\x80\xC3\xA9\xFF \n\xFF", &damage);
    EXPECT_EQ(damage.count, 2U);
    EXPECT_EQ(damage.row, 3U);
    EXPECT_EQ(damage.column, 3U);
}

}  // namespace vrx
