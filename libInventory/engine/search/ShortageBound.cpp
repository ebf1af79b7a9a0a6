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
        BitRow& devices = m_devices.emplace_back(trial.needsDevice(element) ? trial.deviceCount() : 0);
        needy += trial.needsDevice(element) ? 1 : 0;
        for (const std::uint32_t device : trial.devicesOf(element)) {
            if (trial.needsDevice(element)) {
                devices.set(device);
            }
        }
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
        std::vector<BitRow>& rows = m_anyValue[number];
        for (std::uint32_t value = ranges[number].first; value <= ranges[number].second; ++value) {
            m_rows.clear();
            addRows(m_component.digits[number].elements[value]);
            if (value == ranges[number].first) {
                rows.assign(m_rows.size(), BitRow(m_component.trial.deviceCount()));
            }
            rows.resize(std::min(rows.size(), m_rows.size()));
            for (std::size_t i = 0; i < rows.size(); ++i) {
                rows[i] |= *m_rows[i];
            }
        }
    }
}

void ShortageBound::addRows(const BitRow& elements) {
    elements.forEach([this](std::size_t element) {
        if (m_component.trial.needsDevice(element)) {
            m_rows.push_back(&m_devices[element]);
        }
    });
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
            for (const BitRow& row : m_anyValue[digit]) {
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
    for (std::uint32_t row = 0; row < m_rows.size(); ++row) {
        m_seen = BitRow(m_component.trial.deviceCount());
        missing += serve(row) ? 0 : 1;
    }
    return missing;
}

bool ShortageBound::serve(std::uint32_t row) {
    bool isServed = false;
    m_rows[row]->forEach([&](std::size_t device) {
        if (isServed || m_seen.test(device)) {
            return;
        }
        m_seen.set(device);
        if (m_holders[device] == NOBODY || serve(m_holders[device])) {
            m_holders[device] = row;
            isServed = true;
        }
    });
    return isServed;
}

}  // namespace vrx
