/// Escaping of text for the XML layer. Nearly every text needs none, so both directions look for the first unit that
/// does before they copy anything, and then copy the text between such units in whole runs.
///
/// An escape never arises by accident: whatever is written for an escaped unit begins with `%`, so it cannot complete
/// a `%u` that was left as it is, and a `%` that would begin an escape is itself escaped.

#include "libCommon/text/UuCode.h"

#include "libCommon/text/ShortText.h"

namespace vrx {

namespace {

constexpr std::size_t ESCAPE_LENGTH = 6;  // %uXXXX
constexpr StringView DIGITS = u"0123456789ABCDEF";
constexpr std::size_t UU_BLOCK = 16;  // units that are tested together

int hexDigit(char16_t unit) noexcept {
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    const unsigned letter = (unit | 0x20U) - u'a';
    return letter < 6 ? static_cast<int>(letter) + 10 : -1;
}

/// The unit that the escape at `index` stands for; -1 when no escape stands there.
int escapedUnit(StringView text, std::size_t index) noexcept {
    if (text.size() - index < ESCAPE_LENGTH || text[index] != u'%' || text[index + 1] != u'u') {
        return -1;
    }
    int unit = 0;
    for (std::size_t k = 2; k < ESCAPE_LENGTH; ++k) {
        const int digit = hexDigit(text[index + k]);
        if (digit < 0) {
            return -1;
        }
        unit = unit * 16 + digit;
    }
    return unit;
}

/// Whether a unit may need an escape; that depends on its neighbours. Free of branches for the vector code below.
constexpr bool isSuspect(char16_t unit) noexcept {
    const bool isOutside = static_cast<char16_t>(unit - 0x20) >= 0xD800 - 0x20;  // a control or a surrogate and above
    const bool isBlank = (unit == u'\t') | (unit == u'\n') | (unit == u'\r');
    return (isOutside & !isBlank) | (unit == u'%');
}

/// Index of the first suspect from `index` on, or the size. Tests whole blocks first; their fixed length and a sum as
/// wide as the units let the compiler use vector code.
std::size_t findSuspect(StringView text, std::size_t index) noexcept {
    for (; text.size() - index >= UU_BLOCK; index += UU_BLOCK) {
        const char16_t* const units = text.data() + index;
        std::uint16_t suspects = 0;
        for (std::size_t k = 0; k < UU_BLOCK; ++k) {
            suspects = static_cast<std::uint16_t>(suspects | (isSuspect(units[k]) ? 1 : 0));
        }
        if (suspects != 0) {
            break;
        }
    }
    while (index < text.size() && !isSuspect(text[index])) {
        ++index;
    }
    return index;
}

bool needsEscape(StringView text, std::size_t index, bool escapeUnrepresentable, bool protectLiterals) noexcept {
    if (text[index] == u'%') {
        return protectLiterals && escapedUnit(text, index) >= 0;
    }
    return escapeUnrepresentable && !isXmlRepresentable(text, index);
}

/// Index of the first unit from `index` on that is to be escaped, or the size.
std::size_t findToEscape(StringView text, std::size_t index, bool escapeUnrepresentable,
                         bool protectLiterals) noexcept {
    index = findSuspect(text, index);
    while (index < text.size() && !needsEscape(text, index, escapeUnrepresentable, protectLiterals)) {
        index = findSuspect(text, index + 1);
    }
    return index;
}

/// Index of the first escape from `index` on, or the size. `onlyPercent` looks for the escape of a percent sign alone.
std::size_t findEscape(StringView text, std::size_t index, bool onlyPercent) noexcept {
    for (index = text.find(u'%', index); index != StringView::npos; index = text.find(u'%', index + 1)) {
        const int unit = escapedUnit(text, index);
        if (onlyPercent ? unit == u'%' : unit >= 0) {
            return index;
        }
    }
    return text.size();
}

void appendEscape(std::u16string& out, char16_t unit) {
    out.append(u"%u");
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        out.push_back(DIGITS[(unit >> shift) & 0xF]);
    }
}

}  // namespace

bool isXmlRepresentable(StringView text, std::size_t index) noexcept {
    const char16_t unit = text[index];
    if (unit < 0x20) {
        return unit == u'\t' || unit == u'\n' || unit == u'\r';
    }
    const auto isIn = [](char16_t value, unsigned low) {
        return value >= low && value < low + 0x400;
    };
    if (isIn(unit, 0xD800)) {
        return index + 1 < text.size() && isIn(text[index + 1], 0xDC00);
    }
    if (isIn(unit, 0xDC00)) {
        return index > 0 && isIn(text[index - 1], 0xD800);
    }
    return unit < 0xFFFE;
}

String uuEncode(StringView text, bool escapeUnrepresentable, bool protectLiterals) {
    std::size_t found = findToEscape(text, 0, escapeUnrepresentable, protectLiterals);
    if (found == text.size()) {
        return text;
    }
    std::u16string result;
    result.reserve(text.size() + ESCAPE_LENGTH * 4);
    std::size_t copied = 0;
    while (found < text.size()) {
        result.append(text, copied, found - copied);
        appendEscape(result, text[found]);
        copied = found + 1;
        found = findToEscape(text, copied, escapeUnrepresentable, protectLiterals);
    }
    result.append(text, copied);
    return String(std::move(result));
}

String uuDecode(StringView text, bool escapeUnrepresentable, bool protectLiterals) {
    const bool onlyPercent = !escapeUnrepresentable;
    const bool isPlain = (onlyPercent && !protectLiterals) || !hasUnit(text, u'%');
    std::size_t found = isPlain ? text.size() : findEscape(text, 0, onlyPercent);
    if (found == text.size()) {
        return text;
    }
    std::u16string result;
    result.reserve(text.size());
    std::size_t copied = 0;
    while (found < text.size()) {
        result.append(text, copied, found - copied);
        result.push_back(static_cast<char16_t>(escapedUnit(text, found)));
        copied = found + ESCAPE_LENGTH;
        found = findEscape(text, copied, onlyPercent);
    }
    result.append(text, copied);
    return String(std::move(result));
}

bool needsUuEncode(StringView text) noexcept { return findToEscape(text, 0, true, true) != text.size(); }

bool needsUuDecode(StringView text) noexcept {
    return hasUnit(text, u'%') && findEscape(text, 0, false) != text.size();
}

}  // namespace vrx
