#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "libCommon/text/String.h"

/// Questions about short texts that are asked millions of times. They give the answers of the standard library, which
/// goes through 16-bit text unit by unit.
namespace vrx {

/// Whether the unit stands anywhere in the text. Made for texts that hardly ever have it: four units are tested at
/// once, and the last four may overlap those before them.
inline bool hasUnit(StringView text, char16_t unit) noexcept {
    constexpr std::size_t AT_ONCE = sizeof(std::uint64_t) / sizeof(char16_t);
    constexpr std::uint64_t ONES = 0x0001000100010001U;
    constexpr std::uint64_t TOPS = 0x8000800080008000U;
    const auto marks = [unit](const char16_t* units) {
        std::uint64_t others = 0;
        std::memcpy(&others, units, sizeof others);
        others ^= unit * ONES;
        return (others - ONES) & ~others & TOPS;
    };
    if (text.size() < AT_ONCE) {
        return text.find(unit) != StringView::npos;
    }
    const char16_t* const last = text.data() + text.size() - AT_ONCE;
    std::uint64_t found = marks(last);
    for (const char16_t* units = text.data(); units < last; units += AT_ONCE) {
        found |= marks(units);
    }
    return found != 0;
}

/// Whether so many units are the same at both places, compared as two words that overlap. Requires: at least one word,
/// at most two.
template <class Word>
bool areSameUnits(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    const std::size_t last = count - sizeof(Word) / sizeof(char16_t);
    Word words[4];
    std::memcpy(&words[0], a, sizeof(Word));
    std::memcpy(&words[1], b, sizeof(Word));
    std::memcpy(&words[2], a + last, sizeof(Word));
    std::memcpy(&words[3], b + last, sizeof(Word));
    return ((words[0] ^ words[1]) | (words[2] ^ words[3])) == 0;
}

/// Whether two texts are equal. Made for names, of which most have up to 8 units.
inline bool isSameText(StringView a, StringView b) noexcept {
    const std::size_t size = a.size();
    if (size != b.size()) {
        return false;
    }
    if (size >= 4 && size <= 8) {
        return areSameUnits<std::uint64_t>(a.data(), b.data(), size);
    }
    if (size == 2 || size == 3) {
        return areSameUnits<std::uint32_t>(a.data(), b.data(), size);
    }
    return size == 0 || std::memcmp(a.data(), b.data(), size * sizeof(char16_t)) == 0;
}

}  // namespace vrx
