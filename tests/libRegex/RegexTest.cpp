#include <gtest/gtest.h>

#include <thread>

#include "libCommon/logging/Logger.h"
#include "tests/libRegex/RegexTesting.h"

namespace vrx::testing {

namespace {

class WarningCounter : public LogSink {
public:
    WarningCounter() { Logger::addSink(*this); }
    ~WarningCounter() override { Logger::removeSink(*this); }

    void writeLine(const std::string& loggerName, LogPriority priority, StringView message) override {
        m_count += loggerName == "libRegex.Regex" && priority == LogPriority::Warning ? 1 : 0;
        m_last = message;
    }

    unsigned m_count = 0;
    String m_last;
};

}  // namespace

TEST(RegexTest, dialect) {
    const MatchCase rows[] = {
        {u"b.d", u"abcde", true},      {u"^b", u"ab", false},         {u"a.$", u"ab\n", false},
        {u"^a.b$", u"a\nb", false},    {u"^.$", u"\xD83D", true},     {u"^.$", u"\xD83D\xDE00", false},
        {u"^\\d$", u"\u0663", false},  {u"^\\w$", u"\u00E9", false},  {u"^\\s$", u"\u2003", false},
        {u"\\bb", u"\u00E9b", true},   {u"^(a|b)\\1$", u"bb", true},  {u"^(?<=x)y|z$", u"z", true},
        {u"(*UTF)^a.$", u"ab", false}, {u"(*UCP)^\\d$", u"1", false}, {u"^[\u00C0-\u00FF]$", u"\u00E9", true},
        {u"^a(?i)b$", u"aB", true},    {u"[a-c]+", u"", false},
    };
    for (const MatchCase& row : rows) {
        EXPECT_EQ(matches(row.pattern, row.value), row.expected) << row;
    }
}

TEST(RegexTest, letterCaseIsIgnoredWithoutTheFlag) {
    const MatchCase rows[] = {
        {u"^abc$", u"ABC", true},
        {u"^a.C$", u"AxC", true},
        {u"^\u00C4.\u03A9$", u"\u00E4x\u03C9", true},
        {u"^\\D$", u"1", false},
        {u"^\u042F+$", u"\u044F\u042F", true},
        {u"^\\w$", u"\u212A", false},
        {u"^[\u0410-\u042F]$", u"\u0431", true},
        {u"^\\S$", u"\u017F", true},
    };
    for (const MatchCase& row : rows) {
        EXPECT_EQ(Regex::rangeMatches(row.pattern, row.value, 0), row.expected) << row;
    }
    EXPECT_FALSE(matches(u"^A.C$", u"abc"));
    EXPECT_FALSE(Regex::rangeMatches(u"^A.C$", u"abc", 3));
}

TEST(RegexTest, patternsThatDoNotCompileMatchNothing) {
    std::size_t offset = 0;
    EXPECT_EQ(Regex::compileError(u"ab(c", &offset), u"missing closing parenthesis");
    EXPECT_EQ(offset, 4U);
    EXPECT_FALSE(Regex::compileError(u"VRXRRANGE[1-2]x{2}VRXRRANGE[10-20]**(", &offset).isEmpty());
    EXPECT_EQ(offset, 35U);
    EXPECT_FALSE(Regex::compileError(u"(?<=VRXRRANGE[1-2])x", &offset).isEmpty());
    EXPECT_LE(offset, 20U);
    EXPECT_EQ(Regex::compileError(u"^a\\.b$"), u"");
    EXPECT_EQ(Regex::compileError(u"^VRXRRANGE[1-2] MHz$"), u"");

    const StringView broken[] = {
        u"(", u"[a", u"a\\", u"*", u"(?<n>a", u"a{70000}", u"(?:(?:(?:a{999}){999}){999}){999}"};
    for (const StringView pattern : broken) {
        EXPECT_FALSE(matches(pattern, pattern)) << toUtf8(pattern);
        EXPECT_FALSE(matches(pattern, u"a")) << toUtf8(pattern);
        EXPECT_FALSE(Regex::compileError(pattern).isEmpty()) << toUtf8(pattern);
    }
    EXPECT_FALSE(matches(String(1'000'000, u'('), u"("));
    EXPECT_FALSE(matches(concat(String(300'000, u'a'), u".*"), u"a"));
    EXPECT_FALSE(matches(concat(u"[", String(300'000, u'a')), u"a"));
}

// More patterns than the cache holds; one is in use all the while, the first of the others is asked for again.
TEST(RegexTest, patternsOutliveTheCache) {
    for (char16_t i = 0; i < 20'000; ++i) {
        const char16_t unit = static_cast<char16_t>(0x4E00 + i);
        const String pattern = concat(u"^x+", StringView(&unit, 1), u"$");
        ASSERT_TRUE(matches(pattern, concat(u"xx", StringView(&unit, 1)))) << unsigned{i};
        ASSERT_FALSE(matches(pattern, u"xx")) << unsigned{i};
        ASSERT_EQ(matches(u"^x+\\x{4E00}$", concat(u"xx", StringView(&unit, 1))), i == 0);
    }
    EXPECT_TRUE(matches(u"^x+\u4E00$", u"x\u4E00"));
}

TEST(RegexTest, legitimateWorkIsDone) {
    std::u16string value;
    while (value.size() < 2'000) {
        value += value.size() % 500 == 0 ? u"-foo-" : u"lorem";
    }
    const std::size_t before = Regex::exceededCount();
    EXPECT_FALSE(matches(u".*foo.*bar.*", value));
    EXPECT_FALSE(matches(u"^[a-z]+foo[^x]*(?:bar|baz)$", value));
    value.replace(1'990, 3, u"bar");
    EXPECT_TRUE(matches(u".*foo.*bar.*", value));
    EXPECT_TRUE(matches(u"foo(?:.|\\n)*bar", value));
    EXPECT_TRUE(matches(u"fo+.*ba[rz]", std::u16string(100'000, u'a') + u"foobar"));
    EXPECT_EQ(Regex::exceededCount(), before);
}

TEST(RegexTest, explodingPatternsAreGivenUpOnceForEachValue) {
    const std::u16string value = std::u16string(5'000, u'a') + u"!";
    const WarningCounter warnings;
    const std::size_t before = Regex::exceededCount();
    EXPECT_FALSE(matches(u"^(a+)+$", value));
    EXPECT_EQ(warnings.m_count, 1U);
    EXPECT_NE(warnings.m_last.view().find(u"^(a+)+$"), StringView::npos);
    EXPECT_EQ(Regex::exceededCount(), before + 1);
    EXPECT_FALSE(matches(u"^(a+)+$", value));
    std::thread([&value] {
        EXPECT_FALSE(matches(u"^(a+)+$", value));
        EXPECT_EQ(Regex::exceededCount(), 1U);  // each thread counts its own
    }).join();
    EXPECT_FALSE(matches(u"^(a+)+$", value + u"!"));
    EXPECT_EQ(Regex::exceededCount(), before + 3);
    EXPECT_TRUE(matches(u"^(a+)+$", u"aaaa"));

    EXPECT_FALSE(matches(concat(u"^(a+)+[", String(100, u'b'), u"]$"), value));
    EXPECT_EQ(warnings.m_count, 2U);
    EXPECT_LT(warnings.m_last.size(), 160U);
}

// Each of these would take minutes or gigabytes where only the steps from one start were bounded.
TEST(RegexTest, everyTestIsBounded) {
    const std::u16string value(200'000, u'a');
    const StringView hostile[] = {
        u"(?:a?){12}a{12}[xy]",         u"(a|aa)+$b?[xy]", u"a.{0,9000}+[xy]", u"^(?:[a-z]*+!|.)*$",
        u"(?:(?:a|b)|(?1)|((a)))*[xy]", u"[a-z]+.*ba[rz]"};
    for (const StringView pattern : hostile) {
        const std::size_t before = Regex::exceededCount();
        EXPECT_FALSE(matches(pattern, value)) << toUtf8(pattern);
        EXPECT_EQ(Regex::exceededCount(), before + 1) << toUtf8(pattern);
    }
    const std::size_t before = Regex::exceededCount();
    for (char16_t i = 0; i < 2'000; ++i) {
        const char16_t unit = static_cast<char16_t>(0x4E00 + i);
        EXPECT_FALSE(matches(concat(u"^((a+)", StringView(&unit, 1), u"?)+$"), value.substr(0, 2'000) + u"!"));
    }
    EXPECT_EQ(Regex::exceededCount(), before + 2'000);
}

}  // namespace vrx::testing
