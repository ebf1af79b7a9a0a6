#include <gtest/gtest.h>

#include "tests/libRegex/RegexTesting.h"

namespace vrx::testing {

TEST(LiteralPatternTest, anchorsChooseTheComparison) {
    const MatchCase rows[] = {
        {u"", u"", true},
        {u"", u"abc", true},
        {u"^", u"abc", true},
        {u"^$", u"", true},
        {u"^$", u"a", false},
        {u"$", u"abc", true},
        {u"bc", u"abcd", true},
        {u"bd", u"abcd", false},
        {u"^ab", u"abc", true},
        {u"^bc", u"abc", false},
        {u"bc$", u"abc", true},
        {u"ab$", u"abc", false},
        {u"^abc$", u"abc", true},
        {u"^abc$", u"abcd", false},
        {u"^abc$", u"ABC", false},
        {u"^abc$", u"abc\n", false},
        {u"^a\\.b$", u"a.b", true},
        {u"^a\\.b$", u"a.bc", false},
        {u"^a\\.b$", u"axb", false},
        {u"\\.b", u"a..bc", true},
        {u"\\.b$", u"a.b", true},
        {u"\\.b$", u".b.", false},
        {u"a\\.b\\.c", u"a.b", false},
    };
    for (const MatchCase& row : rows) {
        EXPECT_EQ(matches(row.pattern, row.value), row.expected) << row;
    }
}

TEST(LiteralPatternTest, anchoredLiteralsAreRecognised) {
    String literal;
    EXPECT_TRUE(Regex::isAnchoredLiteral(u"^a\\.b$", literal));
    EXPECT_EQ(literal, u"a.b");
    EXPECT_TRUE(Regex::isAnchoredLiteral(u"^\\\\\\^\\$\\.\\?\\*\\+\\{\\}\\[\\]\\(\\)\\|\\-\\/\\ $", literal));
    EXPECT_EQ(literal, u"\\^$.?*+{}[]()|-/ ");
    EXPECT_TRUE(Regex::isAnchoredLiteral(u"^Gr\u00F6\u00DFe } ]$", literal));
    EXPECT_EQ(literal, u"Gr\u00F6\u00DFe } ]");
    EXPECT_TRUE(Regex::isAnchoredLiteral(u"^$", literal));
    EXPECT_EQ(literal, u"");

    literal = u"kept";
    const StringView others[] = {u"a\\.b",     u"^a\\.b",   u"a\\.b$",          u"^a.b$",  u"^a\\d$", u"^a\\n$",
                                 u"^\\Qa\\E$", u"^\\1$",    u"^ab\\$",          u"^ab\\",  u"^a|b$",  u"^a^b$",
                                 u"^a$b$",     u"^a?$",     u"^(ab)$",          u"^[a]$",  u"^a{2}$", u"^a{b}$$",
                                 u"",          u"^\\x41b$", u"^\\Aa$",          u"^a\\Z$", u"^a\\z$", u"^\\aa$",
                                 u"^\\0$",     u"^\\9$",    u"^VRXRRANGE[1-2]$"};
    for (const StringView pattern : others) {
        EXPECT_FALSE(Regex::isAnchoredLiteral(pattern, literal)) << toUtf8(pattern);
    }
    EXPECT_EQ(literal, u"kept");
}

// Inside a group the same pattern goes to the regular expression.
TEST(LiteralPatternTest, decidesAsTheRegularExpressionDoes) {
    constexpr StringView UNITS = u"ab.\\$^?*+{}|-_ /\t\u00E9\xD83D";
    std::mt19937 random(1);
    unsigned matched = 0;
    for (int round = 0; round < 20'000; ++round) {
        const std::u16string text = randomText(random, UNITS, 4);
        std::u16string pattern = random() % 2 == 0 ? u"^" : u"";
        for (const char16_t unit : text) {
            pattern +=
                random() % 4 != 0 && unit != u'a' && unit != u'b' ? std::u16string{u'\\', unit} : std::u16string{unit};
        }
        pattern += random() % 2 == 0 ? u"$" : u"";
        const std::u16string before = randomText(random, UNITS, random() % 2);
        const String value = concat(before, random() % 4 == 0 ? randomText(random, UNITS, 4) : text, before);
        if (!Regex::compileError(pattern).isEmpty()) {
            EXPECT_FALSE(matches(pattern, value)) << toUtf8(pattern);
            continue;
        }
        const bool isMatch = matches(pattern, value);
        matched += isMatch ? 1 : 0;
        ASSERT_EQ(isMatch, matches(concat(u"(?:", pattern, u")"), value))
            << toUtf8(pattern) << " on " << value.toUtf8();
    }
    EXPECT_GT(matched, 4'000U);
}

}  // namespace vrx::testing
