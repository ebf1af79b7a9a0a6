/// Of elements that ask for fewer devices than they are, some are missing, whatever else is chosen. So a matching of
/// the chosen elements with devices in which those that are left out cost least says what a combination costs at least,
/// also when devices are assigned greedily. An alternative that is still open asks for something in any case: it counts
/// as so many elements as the smallest of its choices has, each of which would take what the element of that position
/// takes in any choice, and costs what the cheapest of them costs.
///
/// An element that is missing costs what it costs itself, and with it fails all around it. What fails with any of
/// several elements counts for each of these in parts, which are rounded down: a bound must not be too high.

#include "libInventory/engine/search/ShortageBound.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <iterator>

namespace vrx {

using Kind = SearchNode::Kind;

namespace {

constexpr std::uint32_t NOBODY = 0xFFFFFFFF;

/// Elements beyond which the question costs more than it may save.
constexpr std::size_t MOST_ROWS = 256;

}  // namespace

ShortageBound::ShortageBound(const SearchModel& model, const SearchComponent& component)
    : m_model(model),
      m_component(component),
      m_costs(component.trial.elementCount()),
      m_isFew(component.trial.deviceCount() <= BitRow::BITS),
      m_takerOf(component.trial.deviceCount()),
      m_seenBy(component.trial.deviceCount()) {
    for (const SearchDigitPart& digit : component.digits) {
        std::for_each(digit.tops.begin(), digit.tops.end(), [this](std::uint32_t top) { noteCosts(top, {}); });
    }
    for (const SearchGroup& group : component.groups) {
        std::for_each(group.tops.begin(), group.tops.end(), [this](std::uint32_t top) { noteCosts(top, {}); });
    }
    noteLeastCosts();
    for (std::size_t element = 0; element < m_costs.size(); ++element) {
        m_fewDevices.push_back(fewOf(component.trial.devicesOf(element)));
    }
}

BitRow::Word ShortageBound::fewOf(const NumberList& devices) const {
    BitRow::Word few = 0;
    for (std::size_t i = 0; m_isFew && i < devices.size(); ++i) {
        few |= BitRow::Word{1} << devices[i];
    }
    return few;
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

/// `around` is what fails around the node, in parts.
void ShortageBound::noteCosts(std::uint32_t at, SearchCost around) {
    const SearchNode& node = m_model.nodes[at];
    if (node.kind == Kind::Leaf) {
        around += node.cost;
        m_costs[node.number] = m_component.trial.needsDevice(node.number) ? std::optional(around) : std::nullopt;
    } else if (node.kind == Kind::All || node.kind == Kind::Or) {  // nobody in a `not` needs a device
        for (const std::uint32_t child : node.children) {
            const std::size_t leaves = std::max<std::size_t>(1, leavesIn(node.kind == Kind::Or ? child : at));
            SearchCost inner = around;
            inner += {node.cost.errors / leaves, node.cost.indexSum};
            noteCosts(child, inner);
        }
    }
}

void ShortageBound::noteLeastCosts() {
    const LinkTrial& trial = m_component.trial;
    boost::unordered_flat_map<std::uint32_t, SearchCost> least;
    for (std::uint32_t element = 0; element < m_costs.size(); ++element) {
        if (m_costs[element]) {
            const auto [at, isNew] = least.try_emplace(trial.shareOf(element), *m_costs[element]);
            at->second = m_costs[element]->isBetterThan(at->second) ? *m_costs[element] : at->second;
        }
    }
    m_leastCosts = m_costs;
    for (std::uint32_t element = 0; element < m_costs.size(); ++element) {
        if (m_costs[element] && trial.shareOf(element) != LinkTrial::NOBODY) {
            m_leastCosts[element] = least.at(trial.shareOf(element));
        }
    }
}

void ShortageBound::setRanges(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& ranges) {
    m_anyValue.assign(ranges.size(), {});
    for (std::size_t number = 0; number < ranges.size(); ++number) {
        std::vector<AnyRow>& any = m_anyValue[number];
        for (std::uint32_t value = ranges[number].first; value <= ranges[number].second; ++value) {
            Numbers needy;
            std::ranges::copy_if(m_component.digits[number].elements[value], std::back_inserter(needy),
                                 [this](std::uint32_t element) { return m_costs[element].has_value(); });
            const bool isFirst = value == ranges[number].first;
            any.resize(isFirst ? needy.size() : std::min(any.size(), needy.size()));
            for (std::size_t i = 0; i < any.size(); ++i) {
                const NumberList& devices = m_component.trial.devicesOf(needy[i]);
                any[i].devices.insert(any[i].devices.end(), devices.begin(), devices.end());
                const SearchCost& cost = *m_costs[needy[i]];
                any[i].cost = isFirst || cost.isBetterThan(any[i].cost) ? cost : any[i].cost;
            }
        }
        for (AnyRow& row : any) {
            std::ranges::sort(row.devices);
            row.devices.erase(std::unique(row.devices.begin(), row.devices.end()), row.devices.end());
            row.few = fewOf(row.devices);
        }
    }
}

void ShortageBound::clear(Serving& serving) const {
    serving.rows.clear();
    serving.holders.assign(m_component.trial.deviceCount(), NOBODY);
    serving.fewHeld = 0;
    serving.missing = 0;
    serving.cost = {};
}

void ShortageBound::addElements(Serving& serving, const NumberList& elements) {
    for (const std::uint32_t element : elements) {
        if (m_costs[element]) {
            add(serving, {&m_component.trial.devicesOf(element), *m_costs[element], m_fewDevices[element]});
        }
    }
}

void ShortageBound::addChosen(Serving& serving, const Numbers& chosen, const Numbers& groups,
                              const std::vector<std::uint32_t>& values) {
    clear(serving);
    for (const std::uint32_t group : groups) {
        addElements(serving, m_component.groups[group].elements);
    }
    for (const std::uint32_t digit : chosen) {
        if (countsForSure(digit, chosen, values)) {
            addElements(serving, m_component.digits[digit].elements[values[digit]]);
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
    addChosen(m_serving, chosen, groups, values);
    for (const std::uint32_t digit : open) {
        if (m_component.digits[digit].holder == SearchDigitPart::NONE) {
            for (const AnyRow& row : m_anyValue[digit]) {
                add(m_serving, {&row.devices, row.cost, row.few});
            }
        }
    }
    return costOf(m_serving);
}

std::optional<SearchCost> ShortageBound::costOf(const Serving& serving) {
    return serving.missing == 0 ? std::nullopt : std::optional(serving.cost);
}

/// With one row more either one more is served, or the cheapest of those that stand in its way is left out, which may
/// be the row itself. Rows beyond a number count as served.
void ShortageBound::add(Serving& serving, const Row& added) {
    if (serving.rows.size() == MOST_ROWS) {
        return;
    }
    const auto row = static_cast<std::uint32_t>(serving.rows.size());
    serving.rows.push_back(added);
    if (m_isFew ? takesFreeOfFew(serving, row) : takesFree(serving, row)) {
        return;
    }
    std::uint32_t cheapest = row;
    for (const std::uint32_t reached : m_queue) {
        cheapest = serving.rows[reached].cost.isBetterThan(serving.rows[cheapest].cost) ? reached : cheapest;
    }
    ++serving.missing;
    serving.cost += serving.rows[cheapest].cost;
    if (cheapest != row) {
        const auto its = std::ranges::find(serving.holders, cheapest);
        giveAlong(serving, static_cast<std::uint32_t>(its - serving.holders.begin()), row);
    }
}

/// Whether a way leads from the row to a device that is free, over devices that rows would take and the rows that have
/// these; then it takes one.
bool ShortageBound::takesFree(Serving& serving, std::uint32_t row) {
    ++m_searches;
    m_queue.assign(1, row);
    for (std::size_t at = 0; at < m_queue.size(); ++at) {
        for (const std::uint32_t device : *serving.rows[m_queue[at]].devices) {
            if (m_seenBy[device] == m_searches) {
                continue;
            }
            m_seenBy[device] = m_searches;
            m_takerOf[device] = m_queue[at];
            if (serving.holders[device] == NOBODY) {
                giveAlong(serving, device, row);
                return true;
            }
            m_queue.push_back(serving.holders[device]);
        }
    }
    return false;
}

/// The same with sets of devices.
bool ShortageBound::takesFreeOfFew(Serving& serving, std::uint32_t row) {
    m_queue.assign(1, row);
    BitRow::Word reached = 0;
    for (std::size_t at = 0; at < m_queue.size(); ++at) {
        BitRow::Word added = serving.rows[m_queue[at]].few & ~reached;
        const BitRow::Word free = added & ~serving.fewHeld;
        reached |= added;
        for (added = free != 0 ? free : added; added != 0; added &= added - 1) {
            const auto device = static_cast<std::uint32_t>(std::countr_zero(added));
            m_takerOf[device] = m_queue[at];
            if (free != 0) {
                serving.fewHeld |= BitRow::Word{1} << device;
                giveAlong(serving, device, row);
                return true;
            }
            m_queue.push_back(serving.holders[device]);
        }
    }
    return false;
}

/// Gives the device to the row that would take it, what that has had to the next one, and so on up to the given row.
void ShortageBound::giveAlong(Serving& serving, std::uint32_t device, std::uint32_t row) {
    for (;;) {
        const std::uint32_t taker = m_takerOf[device];
        const auto before = taker == row ? serving.holders.end() : std::ranges::find(serving.holders, taker);
        serving.holders[device] = taker;
        if (before == serving.holders.end()) {
            return;
        }
        device = static_cast<std::uint32_t>(before - serving.holders.begin());
    }
}

}  // namespace vrx
