/// Elements that have to have a device are served first, as many as can be. Then those under a `not` keep what is left
/// of theirs, and devices that should not be left over are exchanged for such as may be.

#include "libInventory/engine/assignment/ExactAssignment.h"

#include <algorithm>
#include <utility>

namespace vrx {

ExactAssignment::ExactAssignment(AssociationLinks& links, const std::vector<Need>& needs,
                                 const std::vector<bool>& isWatched)
    : m_links(links), m_needs(needs), m_groupOf(links.elementCount), m_had(links.elementCount) {
    splitByNeed();
    numberGroups();
    Matching matching(links);
    giveKept(matching, Need::Device);
    matching.complete(groupsThatNeed(Need::Device));
    giveKept(matching, Need::Cover);
    matching.cover(isWatched, groupsThatNeed(Need::Cover));
    pairUp(matching);
}

/// Groups of which some elements stand under a `not` become several, so that all elements of a group need the same.
void ExactAssignment::splitByNeed() {
    for (std::size_t group = 0; group < m_links.groups.size(); ++group) {
        std::vector<std::uint32_t>& elements = m_links.groups[group].elements;
        const Need need = m_needs[elements.front()];
        const auto others = std::stable_partition(elements.begin(), elements.end(),
                                                  [&](std::uint32_t element) { return m_needs[element] == need; });
        m_groupNeeds.push_back(need);
        if (others != elements.end()) {
            AssociationLinks::Group split{{others, elements.end()}, m_links.groups[group].devices};
            elements.erase(others, elements.end());
            m_links.groups.push_back(std::move(split));
        }
    }
}

void ExactAssignment::numberGroups() {
    for (Matching::Index group = 0; group < m_links.groups.size(); ++group) {
        for (const std::uint32_t element : m_links.groups[group].elements) {
            m_groupOf[element] = group;
        }
    }
}

void ExactAssignment::giveKept(Matching& matching, Need need) const {
    for (const auto& [element, device] : m_links.kept) {
        const Matching::Index group = m_groupOf[element];
        if (m_groupNeeds[group] == need && matching.groupOf(device) == Matching::NONE) {
            matching.give(device, group);
        }
    }
}

std::vector<bool> ExactAssignment::groupsThatNeed(Need least) const {
    std::vector<bool> groups(m_groupNeeds.size());
    std::transform(m_groupNeeds.begin(), m_groupNeeds.end(), groups.begin(),
                   [least](Need need) { return need >= least; });
    return groups;
}

/// Within its group every element keeps the device that the reduction gave it, as far as the group still has that.
void ExactAssignment::pairUp(const Matching& matching) {
    std::vector<bool> isGiven(m_links.deviceCount);
    std::vector<bool> has(m_links.elementCount);
    for (const Pair& pair : m_links.kept) {
        m_had[pair.element] = true;
        if (matching.groupOf(pair.device) == m_groupOf[pair.element]) {
            m_pairs.push_back(pair);
            isGiven[pair.device] = true;
            has[pair.element] = true;
        }
    }
    m_keptPairs = m_pairs.size();
    std::vector<std::size_t> next(m_links.groups.size());
    for (Matching::Index device = 0; device < m_links.deviceCount; ++device) {
        const Matching::Index group = matching.groupOf(device);
        if (group == Matching::NONE || isGiven[device]) {
            continue;
        }
        const std::vector<std::uint32_t>& elements = m_links.groups[group].elements;
        while (has[elements[next[group]]]) {
            ++next[group];
        }
        m_pairs.push_back({elements[next[group]++], device});
    }
}

std::vector<std::uint32_t> ExactAssignment::newlyServed() const {
    std::vector<std::uint32_t> served;
    for (const Pair& pair : m_pairs) {
        if (!m_had[pair.element] && m_needs[pair.element] == Need::Device) {
            served.push_back(pair.element);
        }
    }
    return served;
}

}  // namespace vrx
