#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "libInventory/engine/search/model/SearchModel.h"

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
    /// elements may be served. With a bound no combination satisfies everything.
    std::optional<SearchCost> of(const Numbers& open, const Numbers& chosen, const Numbers& groups,
                                 const std::vector<std::uint32_t>& values);

    // ---- combinations one after the other: ShortageBoundSteps.cpp ----

    /// From here on it is asked about combinations of these open digits. The lists live until the last question.
    void begin(const Numbers& open, const Numbers& chosen, const Numbers& groups,
               const std::vector<std::uint32_t>& values);

    /// Open digits from that position on may have other values than at the last question.
    void noteChange(std::size_t position) noexcept { m_upToDate = std::min(m_upToDate, position); }

    /// The same for the present values of all digits.
    std::optional<SearchCost> ofPresent(const std::vector<std::uint32_t>& values);

    /// The same when devices are assigned exactly and the reduction leaves those elements without. Requires: ofPresent
    /// was asked.
    std::optional<SearchCost> ofExact(const BitRow& missing);

private:
    /// The devices that an element would take, and what it costs when it has none.
    struct Row {
        const NumberList* devices;
        SearchCost cost;
        BitRow::Word few;  ///< the same devices, where there are few
    };
    /// What an alternative asks for in any case.
    struct AnyRow {
        NumberList devices;
        SearchCost cost;
        BitRow::Word few = 0;
    };

    /// Some rows, and which of them have a device.
    struct Serving {
        std::vector<Row> rows;
        Numbers holders;  ///< by device: the row that has it
        BitRow::Word fewHeld = 0;
        std::size_t missing = 0;
        SearchCost cost;  ///< of those without
    };

    void noteCosts(std::uint32_t at, SearchCost around);
    void noteLeastCosts();
    std::size_t leavesIn(std::uint32_t at) const;
    bool countsForSure(std::uint32_t digit, const Numbers& chosen, const std::vector<std::uint32_t>& values) const;
    void addChosen(Serving& serving, const Numbers& chosen, const Numbers& groups,
                   const std::vector<std::uint32_t>& values);
    void addElements(Serving& serving, const NumberList& elements);
    void clear(Serving& serving) const;
    static std::optional<SearchCost> costOf(const Serving& serving);

    void add(Serving& serving, const Row& row);
    bool takesFree(Serving& serving, std::uint32_t row);
    bool takesFreeOfFew(Serving& serving, std::uint32_t row);
    BitRow::Word fewOf(const NumberList& devices) const;
    void giveAlong(Serving& serving, std::uint32_t device, std::uint32_t row);

    const SearchModel& m_model;
    const SearchComponent& m_component;
    std::vector<std::optional<SearchCost>> m_costs;  ///< by element: when it is missing; none for those that do no harm
    std::vector<std::optional<SearchCost>> m_leastCosts;  ///< the same of the cheapest that shares its links
    std::vector<BitRow::Word> m_fewDevices;               ///< by element
    std::vector<std::vector<AnyRow>> m_anyValue;          ///< by digit
    bool m_isFew;                                         ///< a word holds the devices
    Serving m_serving;                                    ///< of the present question

    const Numbers* m_open = nullptr;
    const Numbers* m_chosen = nullptr;
    std::vector<Serving> m_steps;  ///< what is chosen, then one open digit more each
    std::size_t m_upToDate = 0;    ///< so many of the open digits are in the steps with their present values

    std::vector<SearchCost> m_missingCosts;

    // Scratch of a search for a free device.
    Numbers m_queue;
    Numbers m_takerOf;  ///< by device that was reached: the row that would take it
    Numbers m_seenBy;   ///< by device: the last search that reached it
    std::uint32_t m_searches = 0;
};

}  // namespace vrx
