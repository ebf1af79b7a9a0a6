#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <regex>

#include "tests/libRegex/RegexTesting.h"

namespace vrx::testing {

namespace {

void expectAll(std::initializer_list<MatchCase> rows) {
    for (const MatchCase& row : rows) {
        EXPECT_EQ(matches(withMarker(row.pattern), row.value), row.expected) << row;
    }
}

}  // namespace

TEST(RangeFormTest, boundsAreIncludedInEitherOrder) {
    expectAll({
        {u"^@[2700-3300]$", u"2700", true},     {u"^@[2700-3300]$", u"3300.0", true},
        {u"^@[2700-3300]$", u"2699.99", false}, {u"^@[2700-3300]$", u"3300.01", false},
        {u"^@[2700-3300]$", u"", false},        {u"^@[2700-3300]$", u"3000 ", false},
        {u"^@[-9--11]$", u"-10", true},         {u"^@[-9--11]$", u"-11", true},
        {u"^@[-9--11]$", u"10", false},         {u"^@[-5-10]$", u"-5", true},
        {u"^@[-5-10]$", u"+10", true},          {u"^@[-5-10]$", u"-5.1", false},
        {u"^@[7-7]$", u"7.00", true},           {u"^@[.5-1.]$", u".75", true},
        {u"^@[1e-5-2E+3]$", u"0.00001", true},  {u"^@[1e-5-2E+3]$", u"2e3", true},
        {u"^@[1e-5-2E+3]$", u"1e-6", false},    {u"^@[0-1e999]$", u"1e400", true},
        {u"^@[0-1]$", u"1e400", false},         {u"^@[0-1]$", u"1e-400", true},
        {u"^@[0-1]$", u"-1e400", false},        {u"^@[1-2]$", u"0e999", false},
        {u"^@[-1e999-0]$", u"-1e400", true},    {u"^@[-1e999-0]$", u"1e400", false},
        {u"^@[0-1e999]$", u"+1e400", true},     {u"^@[0-1e999]$", u"-1e400", false},
    });
    const std::u16string small = u"0." + std::u16string(400, u'0') + u"1e401";
    EXPECT_TRUE(matches(withMarker(u"^@[1-1]$"), small));
    EXPECT_TRUE(matches(withMarker(u"^@[0-1]$"), small + u"0") == false);
}

TEST(RangeFormTest, findsWholeNumbersOnly) {
    expectAll({
        {u"@[3000-3400]", u"DDR-3200", true},
        {u"@[-3400--3000]", u"DDR-3200", false},
        {u"@[-3400--3000]", u"(-3200)", true},
        {u"@[-3400--3000]", u"\u00E9-3200", false},
        {u"@[-3400--3000]", u"\u00B1-3200", true},
        {u"@[200-200]", u"3200", false},
        {u"@[320-320]", u"3200", false},
        {u"@[5-5]", u"1e5", false},
        {u"@[1-1]", u"1e5", false},
        {u"@[1-1]", u"1e", true},
        {u"@[5-5]", u"0.5", false},
        {u"@[0-0]", u"0.5", false},
        {u"@[5-5]", u"-5", false},
        {u"@[10-10]", u"5-10", true},
        {u"@[-10--10]", u"5-10", false},
        {u"@[3200-3200]MHz", u"3200MHz", true},
        {u"@[168-168]", u"192.168.1.1", false},
        {u"@[1.1-1.1]$", u"192.168.1.1", true},
        {u"^@[3-3]\\.$", u"3.", false},
        {u"^-@[5-5]$", u"-5", false},
        {u"^x-@[5-5]$", u"x-5", true},
    });
}

TEST(RangeFormTest, anchorsHoldTheRangeToTheEnds) {
    expectAll({
        {u"^@[1-2]", u"1x", true},
        {u"^@[1-2]", u"x1", false},
        {u"@[1-2]$", u"x1", true},
        {u"@[1-2]$", u"1x", false},
        {u"@[1-2]", u"x1x", true},
        {u"x@[1-2]$", u"x1", true},
        {u"x@[1-2]$", u"1", false},
        {u"^x@[1-2]$", u"x1", true},
        {u"^x@[1-2]$", u"1", false},
        {u"^@[1-2]x$", u"1x", true},
        {u"^@[1-2]x$", u"1", false},
        {u"^@[1-2] MHz", u"1 MHz x", true},
        {u"^@[1-2] MHz", u"x 1 MHz", false},
        {u"@[1-2] MHz$", u"x 1 MHz", true},
        {u"@[1-2] MHz$", u"1 MHz x", false},
        {u"x@[1-2] MHz$", u"1 MHz", false},
        {u"x@[1-2] MHz$", u"1000 kHz", false},
    });
}

TEST(RangeFormTest, standsWhereverAGroupDoes) {
    expectAll({
        {u"^@[1-2]x@[3-4]$", u"1x4", true},
        {u"^@[1-2]x@[3-4]$", u"3x4", false},
        {u"^(\\w+) @[1-2] \\1$", u"ab 2 ab", true},
        {u"^.*@[7-8].*@[1-2]$", u"1 7 9 8 2", true},
        {u"^.*@[7-8].*@[1-2]$", u"1 9 2", false},
        {u"^(?:@[1-9](?:, |$))+$", u"1, 2, 9", true},
        {u"^(?:@[1-9](?:, |$))+$", u"1, 12", false},
        {u"^(?:a@[1-2]|b@[5-6])?$", u"b5", true},
        {u"^(?:a@[1-2]|b@[5-6])?$", u"a5", false},
        {u"^(?!.*@[50-60])", u"10 20", true},
        {u"^(?!.*@[50-60])", u"10 55", false},
        {u"(?U)^@[10-20]$", u"15", true},
        {u"(?xi) ^ @[10-20] ghz $", u"15GHz", true},
        {u"(?C1)^a(?C1)@[1-2](?C1)$", u"a2", true},
        {u"^a?(?C1)b(?C7)$", u"ab", true},
        {u"^@[1-2]{3}", u"1.+22", false},
    });
    String many = u"^";
    String value;
    for (int i = 0; i < 300; ++i) {
        many += withMarker(i == 299 ? u"@[3-4]," : u"@[1-2],");
        value += i == 299 ? u"3," : u"2,";
    }
    EXPECT_TRUE(matches(many, value));
    EXPECT_FALSE(matches(many, value.remove(value.size() - 2, 2) + u"2,"));
}

TEST(RangeFormTest, isOrdinaryTextElsewhere) {
    expectAll({
        {u"^@$", u"VRXRRANGE", true},
        {u"^@[ab]$", u"VRXRRANGEb", true},
        {u"^@x1-2]$", u"VRXRRANGEx1-2]", true},
        {u"^@[5]$", u"VRXRRANGE5", true},
        {u"^@[1-2-3]$", u"VRXRRANGE3", true},
        {u"^@[1-2$", u"1", false},
        {u"^@[", u"1", false},
        {u"^\\Q@[1-2]\\E$", u"VRXRRANGE[1-2]", true},
        {u"^[@[1-2]+$", u"21[E", true},
        {u"^[]@[1-2]+$", u"]1", true},
        {u"^[[:alpha:]@[1-2]+$", u"x2", true},
        {u"^(?#@[1-2]))a$", u"a", false},
        {u"^(?#@[1-2])a$", u"a", true},
        {u"^[\\]]@[1-2]$", u"]2", true},
        {u"^\\c[@[1-2]$", u"\x1B\x32", true},
        {u"^\\@[1-2]$", u"2", false},
        {u"^[[:digit:]]@[1-2]$", u"x1", false},
        {u"^[a[bxb]@[1-2]$", u"[1", true},
        {u"^[[:x]@[1-2]$", u":1", true},
        {u"^[[:]@[1-2]$", u":1", true},
        {u"^[^]]@[1-2]$", u"x1", true},
        {u"^[^]]@[1-2]$", u"]1", false},
        {u"^\\Q[\\E@[1-2]$", u"[1", true},
        {u"^\\c\\@[1-2]$", u"\x1C\x31", true},
    });
}

TEST(RangeFormTest, unitsAreConverted) {
    expectAll({
        {u"^@[990-1010] MHz$", u"1.0 GHz", true},
        {u"^@[990-1010] MHz$", u"1000 MHz", true},
        {u"^@[990-1010] MHz$", u"1011 MHz", false},
        {u"^@[990-1010] MHz$", u"1000 GHz", false},
        {u"^@[990-1010] MHz$", u"1000", false},
        {u"^@[990-1010] MHz$", u"1000 MB", false},
        {u"^@[990-1010] MHz$", u"1000  MHz", false},
        {u"^@[990-1010] MHz$", u"1000 MHz ", false},
        {u"@[990-1010] MHz", u"1.0 GHz", true},
        {u"@[990-1010] MHz", u"at 1000 MHz peak", true},
        {u"@[990-1010] MHz", u"at 1 GHz peak", false},
        {u"^@[1-1] GB$", u"1024 MB", true},
        {u"^@[1-1] GB$", u"1000 MB", false},
        {u"^@[1-1] GiB$", u"1 gigabyte", true},
        {u"^@[2010-2010] MHz$", u"2.01 GHz", true},
        {u"^@[25-25] degC$", u"77 degF", true},
        {u"^@[0.3-0.3] GHz$", u"300 MHz", true},
        {u"^@[1-2] widgets$", u"2 widgets", true},
        {u"^@[1-2] widgets$", u"3 widgets", false},
        {u"^(?:about )?@[990-1010] MHz$", u"1.0 GHz", true},
        {u"^about @[990-1010] MHz$", u"1.0 GHz", false},
        {u"^@[1-2] s|@[9-9] MHz$", u"9000 kHz", true},
    });
    EXPECT_TRUE(Regex::rangeMatches(withMarker(u"^@[990-1010] MHz$"), u"1000 mhz", 0));
    EXPECT_FALSE(matches(withMarker(u"^@[990-1010] MHz$"), u"1000 mhz"));
}

// Every digit of a text belongs to a number, and the range steps over exactly that number.
TEST(RangeFormTest, stepsOverWholeNumbers) {
    std::mt19937 random(3);
    for (int round = 0; round < 20'000; ++round) {
        const std::u16string value = randomText(random, u"01259..eE+-a ", 12);
        ASSERT_TRUE(matches(u"(?U)^(?:VRXRRANGE[-1e999-1e999]|[^0-9])*$", value)) << toUtf8(value);
    }
}

// The numbers of a text by one expression for a number, tried from left to right.
std::vector<double> plainNumbers(const std::string& text) {
    static const std::regex form(R"([-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)");
    std::vector<double> numbers;
    std::size_t lastEnd = 0;
    for (std::size_t i = 0; i < text.size();) {
        const bool isHyphen = i > 0 && (text[i] == '-' || text[i] == '+') && std::isalnum(text[i - 1]) != 0;
        const bool isPointBehindNumber = i > 0 && text[i] == '.' && i == lastEnd;
        std::smatch match;
        if (!isHyphen && !isPointBehindNumber &&
            std::regex_search(text.cbegin() + static_cast<std::ptrdiff_t>(i), text.cend(), match, form,
                              std::regex_constants::match_continuous)) {
            numbers.push_back(std::strtod(match.str().c_str(), nullptr));
            i = lastEnd = i + static_cast<std::size_t>(match.length());
        } else {
            ++i;
        }
    }
    return numbers;
}

TEST(RangeFormTest, findsTheNumbersThatAPlainScanFinds) {
    constexpr StringView BOUNDS[] = {u"0-0", u"1-1", u"-1--1", u"10-99", u"-99--2", u"0.001-0.999", u"100-1e300"};
    std::mt19937 random(4);
    for (int round = 0; round < 2'000; ++round) {
        const std::u16string value = randomText(random, u"01.e-+E x", 7);
        const std::vector<double> numbers = plainNumbers(toUtf8(value));
        for (const StringView bounds : BOUNDS) {
            const std::size_t middle = bounds.find(u'-', 1);
            const double low = std::stod(toUtf8(bounds.substr(0, middle)));
            const double high = std::stod(toUtf8(bounds.substr(middle + 1)));
            const bool expected = std::any_of(numbers.begin(), numbers.end(),
                                              [&](double number) { return number >= low && number <= high; });
            ASSERT_EQ(matches(concat(u"VRXRRANGE[", bounds, u"]"), value), expected)
                << toUtf8(bounds) << " in " << toUtf8(value);
        }
    }
}

// An empty group before it keeps a pattern from being decided without the regular expression.
TEST(RangeFormTest, generatedFormDecidesAsTheRegularExpressionDoes) {
    std::mt19937 random(2);
    unsigned matched = 0;
    for (int round = 0; round < 20'000; ++round) {
        constexpr StringView BOUNDS[] = {u"0-3", u"-3--1", u"2.5-.5", u"1e1-0", u"-1-1e2", u"3-", u"1-2-3"};
        const StringView tail = random() % 2 == 0 ? u"$" : u" MHz$";
        const String pattern = concat(u"^VRXRRANGE[", BOUNDS[random() % std::size(BOUNDS)], u"]", tail);
        constexpr StringView ENDS[] = {u"", u" MHz", u" GHz", u" MB", u"MHz"};
        const String value = concat(randomText(random, u"0123-+.e", 3), ENDS[random() % std::size(ENDS)]);
        const bool isMatch = matches(pattern, value);
        matched += isMatch ? 1 : 0;
        ASSERT_EQ(isMatch, matches(concat(u"(?:)", pattern), value)) << pattern.toUtf8() << " on " << value.toUtf8();
    }
    EXPECT_GT(matched, 400U);
}

}  // namespace vrx::testing
