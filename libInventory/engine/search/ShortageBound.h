#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "libInventory/engine/search/SearchModel.h"

namespace vrx {

/// How good combinations of a component can be at best, because there are too few devices for them, however these are
/// assigned. See ShortageBound.cpp.
class ShortageBound {
public:
    using Numbers = std::vector<std::uint32_t>;

    /// Both are borrowed.
    ShortageBound(const SearchModel& model, const SearchComponent& component);

    /// The values that digits may have, by their numbers in the component.
    void setRanges(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& ranges);

    /// A cost that no combination of the open digits is better than, while others have those values; none where all
    /// elements may be served.
    std::optional<SearchCost> of(const Numbers& open, const Numbers& chosen, const Numbers& groups,
                                 const std::vector<std::uint32_t>& values);

private:
    using Row = const NumberList*;

    void noteCosts(std::uint32_t at, SearchCost around);
    std::size_t leavesIn(std::uint32_t at) const;
    void gather(const Numbers& open, const Numbers& chosen, const Numbers& groups,
                const std::vector<std::uint32_t>& values);
    bool countsForSure(std::uint32_t digit, const Numbers& chosen, const std::vector<std::uint32_t>& values) const;
    void addRows(const NumberList& elements);
    std::size_t shortage();
    bool serve(std::uint32_t row, std::uint32_t first);

    const SearchModel& m_model;
    const SearchComponent& m_component;
    std::vector<std::vector<NumberList>> m_anyValue;  ///< by digit: devices of its elements, whichever value it has
    SearchCost m_least;                               ///< of an element that is missing
    std::size_t m_leaves = 0;

    std::vector<Row> m_rows;  ///< of the present question: the devices of each element
    std::vector<std::uint32_t> m_holders;
    std::vector<std::uint32_t> m_seenBy;  ///< by device: the last row for which it was looked at, counted from 1
};

}  // namespace vrx
