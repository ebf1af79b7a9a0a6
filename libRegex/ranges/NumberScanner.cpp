#include "libRegex/ranges/NumberScanner.h"

#include <algorithm>
#include <limits>

#include "libCommon/text/NumberText.h"

// What is a number in a value or in a bound: an optional sign; digits with an optional fraction ("5", "5.", "5.25",
// ".5"); an optional exponent ("e" or "E", an optional sign, digits).
//
// Numbers of a text are found from left to right, each as long as it can be, so that no number is a piece of another:
// "3200" holds 3200 and never 200, "1e5" holds 100000 and never 5. Two marks do not begin a number:
//   - a sign directly behind a letter or a digit is a hyphen: "DDR-3200" holds 3200, "5-10" holds 5 and 10;
//   - a point directly behind a number separates: "192.168.1.1" holds 192.168 and 1.1.
// What follows a number does not matter: "3200MHz" holds 3200.
//
// The extent is found by this scanner alone; turning it into a double is left to whoever needs the value, because most
// numbers of a text are never looked at.

namespace vrx {

namespace {

constexpr bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }
constexpr bool isSign(char16_t unit) noexcept { return unit == u'-' || unit == u'+'; }

// Beyond ASCII this goes by blocks: from U+00C0 on text is letters, save for two signs and the blocks of punctuation
// and symbols.
constexpr bool isLetter(char16_t unit) noexcept {
    if (unit < 0xC0) {
        return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
    }
    const bool isSymbol =
        unit == 0xD7 || unit == 0xF7 || (unit >= 0x2000 && unit < 0x2C00) || (unit >= 0x3000 && unit < 0x3040);
    return !isSymbol;
}

std::size_t skipDigits(StringView text, std::size_t position) noexcept {
    while (position < text.size() && isDigit(text[position])) {
        ++position;
    }
    return position;
}

// The end of an exponent at the position; the position itself when there is none.
std::size_t skipExponent(StringView text, std::size_t position) noexcept {
    if (position == text.size() || (text[position] != u'e' && text[position] != u'E')) {
        return position;
    }
    std::size_t digits = position + 1;
    if (digits < text.size() && isSign(text[digits])) {
        ++digits;
    }
    const std::size_t end = skipDigits(text, digits);
    return end > digits ? end : position;
}

// The decimal exponent that a number has when written as 0.d * 10^n, its first digit not 0. Requires: not zero.
double decimalMagnitude(StringView digits, StringView exponent) noexcept {
    double magnitude = 0;
    for (const char16_t unit : exponent) {
        if (isDigit(unit)) {
            magnitude = magnitude * 10 + (unit - u'0');
        }
    }
    if (!exponent.empty() && exponent.front() == u'-') {
        magnitude = -magnitude;
    }
    const auto point = std::min(digits.find(u'.'), digits.size());
    const auto first = digits.find_first_not_of(u"0.");
    const auto before = static_cast<double>(point) - static_cast<double>(first);
    return magnitude + (first < point ? before : before + 1);
}

// What stands for a number that no double can hold.
double saturatedValue(StringView number) noexcept {
    const double sign = number.front() == u'-' ? -1 : 1;
    if (isSign(number.front())) {
        number.remove_prefix(1);
    }
    const auto mark = std::min(number.find_first_of(u"eE"), number.size());
    if (number.find_first_not_of(u"0.") == mark) {
        return 0;
    }
    const StringView exponent = mark < number.size() ? number.substr(mark + 1) : StringView();
    const bool isLarge = decimalMagnitude(number.substr(0, mark), exponent) > 0;
    return isLarge ? sign * std::numeric_limits<double>::infinity() : 0.0;
}

bool isSeparator(StringView text, std::size_t position, std::size_t lastEnd) noexcept {
    if (position == 0) {
        return false;
    }
    if (isSign(text[position])) {
        return isDigit(text[position - 1]) || isLetter(text[position - 1]);
    }
    return text[position] == u'.' && position == lastEnd;
}

}  // namespace

std::optional<std::size_t> numberEnd(StringView text, std::size_t begin) noexcept {
    std::size_t position = begin;
    if (position < text.size() && isSign(text[position])) {
        ++position;
    }
    const std::size_t whole = skipDigits(text, position);
    std::size_t end = whole;
    if (end < text.size() && text[end] == u'.') {
        end = skipDigits(text, end + 1);
    }
    const bool hasDigit = whole > position || end > whole + 1;
    if (!hasDigit) {
        return std::nullopt;
    }
    return skipExponent(text, end);
}

NumberPlaces findNumbers(StringView text) {
    NumberPlaces places;
    std::size_t lastEnd = 0;
    std::size_t position = 0;
    while (position < text.size()) {
        const char16_t unit = text[position];
        const bool canBegin = isDigit(unit) || isSign(unit) || unit == u'.';
        if (canBegin && !isSeparator(text, position, lastEnd)) {
            if (const auto end = numberEnd(text, position)) {
                places.push_back({position, *end});
                lastEnd = position = *end;
                continue;
            }
        }
        ++position;
    }
    return places;
}

double numberValue(StringView number) noexcept {
    const StringView unsignedPart = number.front() == u'+' ? number.substr(1) : number;
    const auto value = parseReal(unsignedPart);
    return value ? *value : saturatedValue(number);
}

}  // namespace vrx
