#pragma once

#include <boost/container/small_vector.hpp>
#include <cstddef>
#include <optional>

#include "libCommon/text/String.h"

namespace vrx {

/// Where a number stands in a text: [begin, end) in code units.
struct NumberPlace {
    std::size_t begin = 0;
    std::size_t end = 0;
};

using NumberPlaces = boost::container::small_vector<NumberPlace, 8>;

/// The end of the longest number that begins exactly at `begin` (sign included); empty when none does. Looks at nothing
/// before `begin`.
std::optional<std::size_t> numberEnd(StringView text, std::size_t begin) noexcept;

/// All numbers of a text, in order, none a piece of another.
NumberPlaces findNumbers(StringView text);

/// The value of a number. One that is too large for a double is infinite, one that is too small is 0.
/// Requires: numberEnd(number, 0) == number.size().
double numberValue(StringView number) noexcept;

/// Two bounds of a range, ordered.
struct NumberRange {
    double low = 0;
    double high = 0;

    bool contains(double number) const noexcept { return low <= number && number <= high; }
};

}  // namespace vrx
