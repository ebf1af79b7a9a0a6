#pragma once

#include <cstddef>
#include <optional>

#include "libCommon/text/String.h"

namespace vrx {

/// A range as it is written.
struct RangeText {
    StringView lowText;
    double low;
    double high;
    std::size_t end;  ///< in the pattern, behind the closing bracket
};

/// The valid range whose marker stands at that place of the pattern; empty when it is none.
std::optional<RangeText> rangeAt(StringView pattern, std::size_t marker);

/// Where the next marker of a range stands, valid or not; npos when there is none.
std::size_t findRangeMarker(StringView pattern, std::size_t from = 0) noexcept;

/// Whether the text opens with bounds in brackets, as they would stand behind a marker. "[1-6]" does not: with one
/// digit on either side it is a class of characters, as people write them.
bool opensWithBounds(StringView text);

/// Whether the numbers that the ranges hold have none in common.
bool areDisjoint(const RangeText& a, const RangeText& b) noexcept;

}  // namespace vrx
