/// Of elements that ask for fewer devices than they are, some are missing, whatever else is chosen. So the largest
/// matching of the chosen elements with devices says how many are missing at least, also when devices are assigned
/// greedily. An alternative that is still open asks for something in any case: it counts as so many elements as the
/// smallest of its choices has, each of which would take what the element of that position takes in any choice.
///
/// Each missing element costs at least what the cheapest costs, with those around it that fail for no other reason.

#include "libInventory/engine/search/ShortageBound.h"

#include <algorithm>
#include <limits>

namespace vrx {

using Kind = SearchNode::Kind;

namespace {

constexpr std::uint32_t NOBODY = 0xFFFFFFFF;

/// Elements beyond which the question costs more than it may save.
constexpr std::size_t MOST_ROWS = 256;

}  // namespace

ShortageBound::ShortageBound(const SearchModel& model, const SearchComponent& component)
    : m_model(model), m_component(component), m_holders(component.trial.deviceCount()) {
    const LinkTrial& trial = component.trial;
    std::size_t needy = 0;
    for (std::size_t element = 0; element < trial.elementCount(); ++element) {
        needy += trial.needsDevice(element) ? 1 : 0;
    }
    m_least.errors = std::numeric_limits<std::uint64_t>::max();
    for (const SearchDigitPart& digit : component.digits) {
        std::for_each(digit.tops.begin(), digit.tops.end(), [this](std::uint32_t top) { noteCosts(top, {}); });
    }
    for (const SearchGroup& group : component.groups) {
        std::for_each(group.tops.begin(), group.tops.end(), [this](std::uint32_t top) { noteCosts(top, {}); });
    }
    if (m_leaves != needy) {
        m_least = SearchCost();  // some are missing at no cost
    }
}

/// How many elements in it can be missing at the same time.
std::size_t ShortageBound::leavesIn(std::uint32_t at) const {
    const SearchNode& node = m_model.nodes[at];
    std::size_t leaves = node.kind == Kind::Leaf ? 1 : 0;
    for (const std::uint32_t child : node.children) {
        const std::size_t inside = leavesIn(child);
        leaves = node.kind == Kind::Or ? std::max(leaves, inside) : leaves + inside;
    }
    return leaves;
}

/// `around` is what fails with the node and with nothing else.
void ShortageBound::noteCosts(std::uint32_t at, SearchCost around) {
    const SearchNode& node = m_model.nodes[at];
    if (node.kind == Kind::Leaf) {
        ++m_leaves;
        around += node.cost;
        const std::uint64_t indexSum = std::max(m_least.indexSum, around.indexSum);
        m_least = {std::min(m_least.errors, around.errors), indexSum};
        return;
    }
    for (const std::uint32_t child : node.children) {
        const bool isOnly = leavesIn(node.kind == Kind::Or ? child : at) == 1;
        SearchCost inner = isOnly ? around : SearchCost();
        inner += isOnly ? node.cost : SearchCost();
        noteCosts(child, inner);
    }
}

void ShortageBound::setRanges(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& ranges) {
    m_anyValue.assign(ranges.size(), {});
    for (std::size_t number = 0; number < ranges.size(); ++number) {
        std::vector<NumberList>& rows = m_anyValue[number];
        for (std::uint32_t value = ranges[number].first; value <= ranges[number].second; ++value) {
            m_rows.clear();
            addRows(m_component.digits[number].elements[value]);
            rows.resize(value == ranges[number].first ? m_rows.size() : std::min(rows.size(), m_rows.size()));
            for (std::size_t i = 0; i < rows.size(); ++i) {
                rows[i].insert(rows[i].end(), m_rows[i]->begin(), m_rows[i]->end());
            }
        }
        for (NumberList& row : rows) {
            std::sort(row.begin(), row.end());
            row.erase(std::unique(row.begin(), row.end()), row.end());
        }
    }
}

void ShortageBound::addRows(const NumberList& elements) {
    for (const std::uint32_t element : elements) {
        if (m_component.trial.needsDevice(element)) {
            m_rows.push_back(&m_component.trial.devicesOf(element));
        }
    }
}

void ShortageBound::gather(const Numbers& open, const Numbers& chosen, const Numbers& groups,
                           const std::vector<std::uint32_t>& values) {
    m_rows.clear();
    for (const std::uint32_t group : groups) {
        addRows(m_component.groups[group].elements);
    }
    for (const std::uint32_t digit : chosen) {
        if (countsForSure(digit, chosen, values)) {
            addRows(m_component.digits[digit].elements[values[digit]]);
        }
    }
    for (const std::uint32_t digit : open) {
        if (m_component.digits[digit].holder == SearchDigitPart::NONE) {
            for (const NumberList& row : m_anyValue[digit]) {
                m_rows.push_back(&row);
            }
        }
    }
}

/// Whether the alternatives that the digit lies in are chosen.
bool ShortageBound::countsForSure(std::uint32_t digit, const Numbers& chosen,
                                  const std::vector<std::uint32_t>& values) const {
    for (std::size_t at = m_component.digits[digit].holder; at != SearchDigitPart::NONE;
         at = m_component.digits[at].holder) {
        if (values[at] != 0 || std::find(chosen.begin(), chosen.end(), at) == chosen.end()) {
            return false;
        }
    }
    return true;
}

std::optional<SearchCost> ShortageBound::of(const Numbers& open, const Numbers& chosen, const Numbers& groups,
                                            const std::vector<std::uint32_t>& values) {
    if (m_least.errors == 0) {
        return std::nullopt;
    }
    gather(open, chosen, groups, values);
    const std::size_t missing = m_rows.size() > MOST_ROWS ? 0 : shortage();
    return missing == 0 ? std::nullopt
                        : std::optional<SearchCost>({missing * m_least.errors, missing * m_least.indexSum});
}

std::size_t ShortageBound::shortage() {
    std::fill(m_holders.begin(), m_holders.end(), NOBODY);
    std::size_t missing = 0;
    m_seenBy.assign(m_holders.size(), 0);
    for (std::uint32_t row = 0; row < m_rows.size(); ++row) {
        missing += serve(row, row) ? 0 : 1;
    }
    return missing;
}

/// `first` is the row that is to be added to those that are served.
bool ShortageBound::serve(std::uint32_t row, std::uint32_t first) {
    for (const std::uint32_t device : *m_rows[row]) {
        if (m_seenBy[device] == first + 1) {
            continue;
        }
        m_seenBy[device] = first + 1;
        if (m_holders[device] == NOBODY || serve(m_holders[device], first)) {
            m_holders[device] = row;
            return true;
        }
    }
    return false;
}

}  // namespace vrx
