/// Comparison without letter case. Each code unit is folded by itself with Unicode's simple case folding, which never
/// changes the number of units; so texts of different length differ, and surrogate pairs compare exactly. Nearly all
/// texts are ASCII, whose folding needs no table.

#include <unicode/uchar.h>

#include "libCommon/text/String.h"

namespace vrx {

namespace {

char16_t foldUnit(char16_t unit) noexcept {
    if (unit < 0x80) {
        const bool isUpper = static_cast<unsigned>(unit - u'A') < 26U;
        return static_cast<char16_t>(unit | (isUpper ? 0x20U : 0U));
    }
    return static_cast<char16_t>(u_foldCase(unit, U_FOLD_CASE_DEFAULT));
}

}  // namespace

bool equalNoCase(StringView a, StringView b) noexcept {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t index = 0; index < a.size(); ++index) {
        if (a[index] != b[index] && foldUnit(a[index]) != foldUnit(b[index])) {
            return false;
        }
    }
    return true;
}

int compareNoCase(StringView a, StringView b) noexcept {
    const std::size_t shared = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t index = 0; index < shared; ++index) {
        if (a[index] == b[index]) {
            continue;
        }
        const int difference = static_cast<int>(foldUnit(a[index])) - static_cast<int>(foldUnit(b[index]));
        if (difference != 0) {
            return difference;
        }
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

String foldCase(StringView text) {
    std::u16string folded(text);
    for (char16_t& unit : folded) {
        unit = foldUnit(unit);
    }
    return String(std::move(folded));
}

bool String::equalNoCase(StringView other) const noexcept { return vrx::equalNoCase(m_text, other); }

int String::compareNoCase(StringView other) const noexcept { return vrx::compareNoCase(m_text, other); }

}  // namespace vrx
