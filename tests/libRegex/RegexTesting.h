#pragma once

#include <ostream>
#include <random>
#include <string>

#include "libRegex/Regex.h"

namespace vrx::testing {

/// One row of a table of tests.
struct MatchCase {
    StringView pattern;
    StringView value;
    bool expected;

    friend std::ostream& operator<<(std::ostream& out, const MatchCase& row) {
        return out << toUtf8(row.pattern) << " on " << toUtf8(row.value);
    }
};

inline bool matches(StringView pattern, StringView value) {
    return Regex::rangeMatches(pattern, value, Regex::CASE_SENSITIVE);
}

/// `text` with each "@" replaced by the marker of ranges, so that tables stay readable.
inline String withMarker(StringView text) { return String(text).replace(u"@", Regex::VRXRRANGE()); }

/// A text of up to `maxUnits` units of the alphabet.
inline std::u16string randomText(std::mt19937& random, StringView alphabet, unsigned maxUnits) {
    std::u16string text(random() % (maxUnits + 1), u' ');
    for (char16_t& unit : text) {
        unit = alphabet[random() % alphabet.size()];
    }
    return text;
}

}  // namespace vrx::testing
