#include "libFleet/FleetSummary.h"

#include <algorithm>
#include <numeric>

namespace vrx {

namespace {

constexpr std::size_t FEWEST_FOR_SUSPICION = 3;

void addExample(std::vector<std::string>& examples, const std::string& file) {
    if (examples.size() < FleetSummary::MOST_EXAMPLES) {
        examples.push_back(file);
    }
}

template <typename Entry>
std::vector<const Entry*> most(const std::vector<Entry>& entries, std::size_t count) {
    std::vector<const Entry*> order(entries.size());
    std::ranges::transform(entries, order.begin(), [](const Entry& entry) { return &entry; });
    const std::size_t kept = std::min(count, order.size());
    std::ranges::partial_sort(
        order, order.begin() + static_cast<std::ptrdiff_t>(kept),
        [](const Entry* a, const Entry* b) { return a->machines != b->machines ? a->machines > b->machines : a < b; });
    order.resize(kept);
    return order;
}

}  // namespace

std::optional<std::uint32_t> FleetSummary::add(const FleetResult& result) {
    ++m_counts[static_cast<std::size_t>(result.verdict)];
    m_hasInternalError = m_hasInternalError || result.isInternalError;
    if (result.verdict == FleetVerdict::Unreadable) {
        if (m_unreadable.size() < MOST_UNREADABLE) {
            m_unreadable.push_back({result.file, result.headline});
        }
        return std::nullopt;
    }
    if (result.faults.empty()) {
        return std::nullopt;
    }
    const std::optional<std::vector<std::uint32_t>> faults = countFaults(result);
    const std::optional<std::uint32_t> group = faults ? groupOf(*faults) : std::nullopt;
    if (!group) {
        ++m_ungroupedMachines;
        return std::nullopt;
    }
    ++m_groups[*group].machines;
    addExample(m_groups[*group].examples, result.file);
    return group;
}

std::size_t FleetSummary::machines() const noexcept {
    return std::accumulate(m_counts.begin(), m_counts.end(), std::size_t{0});
}

std::vector<const FleetSummary::FaultCount*> FleetSummary::frequentFaults(std::size_t count) const {
    return most(m_faults, count);
}

std::vector<const FleetSummary::Group*> FleetSummary::largestGroups(std::size_t count) const {
    return most(m_groups, count);
}

const FleetSummary::FaultCount* FleetSummary::suspect() const {
    const std::vector<const FaultCount*> first = frequentFaults(1);
    const std::size_t checked = machines() - count(FleetVerdict::Unreadable);
    return checked >= FEWEST_FOR_SUSPICION && !first.empty() && 2 * first.front()->machines > checked ? first.front()
                                                                                                      : nullptr;
}

/// The fault's index; none when it is a new one and there are too many.
std::optional<std::uint32_t> FleetSummary::indexOf(const FleetFault& fault) {
    std::string text = fault.key.text();
    if (const auto known = m_faultIndex.find(text); known != m_faultIndex.end()) {
        return known->second;
    }
    if (m_faults.size() == MOST_FAULTS) {
        return std::nullopt;
    }
    const auto index = static_cast<std::uint32_t>(m_faults.size());
    m_faults.push_back({fault.key, 0, fault.text, {}});
    m_faultIndex.emplace(std::move(text), index);
    return index;
}

/// The set of the machine's faults; none when one of them is not counted. A fault that a machine has twice, as two
/// equal devices may, counts once.
std::optional<std::vector<std::uint32_t>> FleetSummary::countFaults(const FleetResult& result) {
    std::vector<std::uint32_t> indices;
    bool isWhole = true;
    for (const FleetFault& fault : result.faults) {
        if (const std::optional<std::uint32_t> index = indexOf(fault)) {
            indices.push_back(*index);
        } else {
            ++m_uncountedFaults;
            isWhole = false;
        }
    }
    std::ranges::sort(indices);
    indices.erase(std::ranges::unique(indices).begin(), indices.end());
    for (const std::uint32_t index : indices) {
        ++m_faults[index].machines;
        addExample(m_faults[index].examples, result.file);
    }
    return isWhole ? std::optional(std::move(indices)) : std::nullopt;
}

std::optional<std::uint32_t> FleetSummary::groupOf(const std::vector<std::uint32_t>& faults) {
    std::string key(reinterpret_cast<const char*>(faults.data()), faults.size() * sizeof(std::uint32_t));
    if (const auto known = m_groupIndex.find(key); known != m_groupIndex.end()) {
        return known->second;
    }
    if (m_groups.size() == MOST_GROUPS || m_members + faults.size() > MOST_MEMBERS) {
        return std::nullopt;
    }
    const auto index = static_cast<std::uint32_t>(m_groups.size());
    m_members += faults.size();
    m_groups.push_back({faults, 0, {}});
    m_groupIndex.emplace(std::move(key), index);
    return index;
}

}  // namespace vrx
