#include <gtest/gtest.h>

#include "libCommon/text/String.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

TEST(StringCaseTest, foldsAsciiLettersOnly) {
    for (char16_t unit = 0; unit < 0x80; ++unit) {
        const char16_t expected = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
        EXPECT_EQ(foldCase(StringView(&unit, 1)), String(1, expected));
    }
}

TEST(StringCaseTest, foldsUnitsOfOtherScriptsOneByOne) {
    EXPECT_TRUE(equalNoCase(u"ÄÖÜ ΣΑΣ ДИСК", u"äöü σας диск"));
    EXPECT_TRUE(equalNoCase(u"\u212A", u"k"));  // the Kelvin sign
    EXPECT_FALSE(equalNoCase(u"ß", u"ss"));     // folding never changes the number of units
    EXPECT_FALSE(equalNoCase(u"\u0130", u"i"));
    EXPECT_FALSE(equalNoCase(u"\U00010400", u"\U00010428"));  // units are folded, not pairs
    EXPECT_TRUE(equalNoCase(u"\xD800", u"\xD800"));
}

TEST(StringCaseTest, comparesEqualExactlyWhenFoldedTextsAreEqual) {
    const String texts[] = {u"", u"a", u"A", u"ab", u"AB", u"b", u"Z", u"[", u"é", u"É", u"\u212A", u"k", u"K"};
    for (const String& a : texts) {
        for (const String& b : texts) {
            const bool isEqual = foldCase(a) == foldCase(b);
            EXPECT_EQ(a.equalNoCase(b), isEqual);
            EXPECT_EQ(a.compareNoCase(b) == 0, isEqual);
            EXPECT_EQ(a.compareNoCase(b) < 0, foldCase(a) < foldCase(b));
        }
    }
}

}  // namespace vrx
