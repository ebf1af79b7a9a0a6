#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libCommon/Forward.h"
#include "libInventory/engine/ElementContext.h"
#include "libInventory/engine/search/SearchOutcome.h"

namespace vrx {

/// One `or` that the odometer steps.
struct SearchDigit {
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    ElementContext* context = nullptr;
    std::vector<std::uint32_t> positions;  ///< the children that it goes through, from where it starts after a carry
    std::uint32_t childCount = 0;
    std::uint32_t start = 0;    ///< index of the position of the first combination
    std::size_t holder = NONE;  ///< the digit in whose first position it lies: it counts only while that is chosen
    Rank weight;                ///< how many combinations it takes until it is stepped

    std::uint32_t radix() const noexcept { return static_cast<std::uint32_t>(positions.size()); }
};

/// The values that each digit of some combinations takes, the last one included.
using DigitRanges = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

/// The digits of the odometer, the one that turns fastest first. See SearchDigits.cpp.
class SearchDigits {
public:
    using Values = std::vector<std::uint32_t>;

    std::vector<SearchDigit>& all() noexcept { return m_digits; }
    const std::vector<SearchDigit>& all() const noexcept { return m_digits; }

    /// Once all digits are known. `count` is how many combinations the loop would try.
    void settle(const Rank& count);

    /// The combinations after the first, as products of ranges, in the order in which they are tried. The first one is
    /// in them when it does not differ from others.
    const std::vector<DigitRanges>& boxes() const noexcept { return m_boxes; }

    /// The rank of the first combination, and of the last.
    const Rank& first() const noexcept { return m_first; }
    const Rank& last() const noexcept { return m_last; }

    /// Makes the digits show a combination.
    void show(const Rank& rank) const;

    /// Whether the first combination is not like the others: a hopeless `or` is looked into only there.
    bool isFirstApart = false;

private:
    Values valuesOf(const Rank& rank) const;
    void addBelow(const Rank& end);
    void addBetween(const Rank& begin, const Rank& end);
    void addBox(const Values& values, std::size_t digit, std::uint32_t from, std::uint32_t until);

    std::vector<SearchDigit> m_digits;
    std::vector<DigitRanges> m_boxes;
    Rank m_period = 1;
    Rank m_first;
    Rank m_last;
};

}  // namespace vrx
