/// Combinations that come one after the other mostly differ in the last of their digits, so what is found out about
/// the ones before it is kept.

#include "libInventory/engine/search/ShortageBound.h"

#include <algorithm>

namespace vrx {

void ShortageBound::begin(const Numbers& open, const Numbers& chosen, const Numbers& groups,
                          const std::vector<std::uint32_t>& values) {
    m_open = &open;
    m_chosen = &chosen;
    m_upToDate = 0;
    m_steps.resize(std::max(m_steps.size(), open.size() + 1));
    addChosen(m_steps.front(), chosen, groups, values);
}

std::optional<SearchCost> ShortageBound::ofPresent(const std::vector<std::uint32_t>& values) {
    for (; m_upToDate < m_open->size(); ++m_upToDate) {
        const std::uint32_t digit = (*m_open)[m_upToDate];
        Serving& step = m_steps[m_upToDate + 1];
        step = m_steps[m_upToDate];
        if (countsForSure(digit, *m_chosen, values)) {
            addElements(step, m_component.digits[digit].elements[values[digit]]);
        }
    }
    return costOf(m_steps[m_open->size()]);
}

/// Elements that the reduction serves stay served, or others that share their links are served instead. So as many as
/// are missing in any case are among those that it leaves without.
std::optional<SearchCost> ShortageBound::ofExact(const BitRow& missing) {
    m_missingCosts.clear();
    missing.forEach([this](std::size_t element) {
        if (m_leastCosts[element]) {
            m_missingCosts.push_back(*m_leastCosts[element]);
        }
    });
    const std::size_t count = std::min(m_steps[m_open->size()].missing, m_missingCosts.size());
    if (count == 0) {
        return std::nullopt;
    }
    std::ranges::sort(m_missingCosts, [](const SearchCost& a, const SearchCost& b) { return a.isBetterThan(b); });
    SearchCost cost;
    std::for_each_n(m_missingCosts.begin(), count, [&cost](const SearchCost& one) { cost += one; });
    return cost;
}

}  // namespace vrx
