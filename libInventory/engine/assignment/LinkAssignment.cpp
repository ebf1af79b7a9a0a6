/// The greedy reduction decides by itself where it gives every element outside of a `not` a device and leaves none that
/// a `fail-on-extra` rule watches. Where it does not, an assignment is looked for that does: a matching that starts
/// from what the reduction chose, so that only what has to be different is.
///
/// Elements under a `not` are met or not whoever has their devices. They take none from others, but what is left they
/// keep from being extra, as they do in the reduction.
///
/// Of an assignment that cannot be complete the largest there is stands.

#include "libInventory/engine/assignment/LinkAssignment.h"

#include <algorithm>
#include <utility>

#include "libInventory/InventoryDeviceAssociationsNodes.h"
#include "libInventory/engine/ExtraDeviceSearch.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

bool standsBefore(const XmlElement* a, const XmlElement* b) {
    return std::pair(a->Row(), a->Column()) < std::pair(b->Row(), b->Column());
}

const XmlElement* partAbove(const XmlElement& element) {
    const XmlContainer* at = element.Parent();
    while (at != nullptr && !(at->ToElement() && vocabulary::kindOf(*at->ToElement()) == ElementKind::Part)) {
        at = at->Parent();
    }
    return at != nullptr ? at->ToElement() : nullptr;
}

}  // namespace

void LinkAssignment::settle() {
    m_state.m_associations.removeExtraLinks();
    RunRecord& record = m_state.m_record;
    record.isAssignedExactly = false;
    record.exactlyAssigned.clear();
    const bool isAsked = m_state.m_assignsExactly || (m_state.m_mayAssignExactly && !record.couldGainByExactness);
    if (!isAsked || !leavesSomethingUndone()) {
        return;
    }
    record.couldGainByExactness = true;
    if (m_state.m_assignsExactly) {
        assignExactly();
    }
}

// Which devices are extra only matters where every element can be served.
bool LinkAssignment::leavesSomethingUndone() {
    Array<const Inventory::InventoryDeviceAssociations::InventoryNode*> without;
    m_state.m_associations.getUnsatisfiedInventories(without);
    bool isHopeless = false;
    for (const auto* const node : without) {
        if (isUnderNot(*node->element())) {
            continue;
        }
        if (node->hasEverMatched()) {
            return true;
        }
        isHopeless = true;
    }
    return !isHopeless && !uncovered().empty();
}

/// The watched devices that elements were linked with and that none has, or none that keeps it.
std::vector<boost::shared_ptr<IDeviceImp>> LinkAssignment::uncovered() {
    std::vector<boost::shared_ptr<IDeviceImp>> devices = ExtraDeviceSearch(m_state).watched();
    const boost::unordered_flat_set<const IDeviceImp*> forgotten = toBeForgotten();
    std::erase_if(devices, [&](const boost::shared_ptr<IDeviceImp>& device) {
        bool isLinked = false;
        return !m_state.m_associations.isExtra(device, isLinked) && !forgotten.contains(device.get());
    });
    return devices;
}

/// The devices of elements that need nothing.
boost::unordered_flat_set<const IDeviceImp*> LinkAssignment::toBeForgotten() const {
    boost::unordered_flat_set<const IDeviceImp*> devices;
    if (m_state.m_deviceToPartsTable == nullptr) {
        return devices;
    }
    RunRecord::Links links;
    m_state.m_associations.getLinks(links);
    for (const auto& [element, device] : links) {
        if (needOf(*element) == Need::Nothing) {
            devices.insert(device);
        }
    }
    return devices;
}

void LinkAssignment::assignExactly() {
    AssociationLinks links = m_state.m_associations.links();
    splitByNeed(links);
    GroupOf groupOf;
    for (Matching::Index group = 0; group < links.groups.size(); ++group) {
        for (const XmlElement* const element : links.groups[group].elements) {
            groupOf[element] = group;
        }
    }
    Matching matching(links);
    const auto giveKept = [&](Need need) {
        for (const auto& [element, device] : links.kept) {
            const Matching::Index group = groupOf[element];
            if (m_needs[group] == need && matching.groupOf(device) == Matching::NONE) {
                matching.give(device, group);
            }
        }
    };
    giveKept(Need::Device);
    matching.complete(groupsThatNeed(Need::Device));
    giveKept(Need::Cover);
    matching.cover(watchedAmong(links), groupsThatNeed(Need::Cover));
    take(links, matching, groupOf);
}

/// Groups of which some elements stand under a `not` become several, so that all elements of a group need the same.
void LinkAssignment::splitByNeed(AssociationLinks& links) {
    m_needs.clear();
    for (std::size_t group = 0; group < links.groups.size(); ++group) {
        std::vector<const XmlElement*>& elements = links.groups[group].elements;
        const Need need = m_needs.size() > group ? m_needs[group] : needOf(*elements.front());
        const auto others = std::stable_partition(elements.begin(), elements.end(),
                                                  [&](const XmlElement* element) { return needOf(*element) == need; });
        m_needs.resize(links.groups.size(), need);
        m_needs[group] = need;
        if (others != elements.end()) {
            AssociationLinks::Group split{{others, elements.end()}, links.groups[group].devices};
            elements.erase(others, elements.end());
            m_needs.push_back(needOf(*split.elements.front()));
            links.groups.push_back(std::move(split));
        }
    }
}

LinkAssignment::Need LinkAssignment::needOf(const XmlElement& element) const {
    if (!isUnderNot(element)) {
        return Need::Device;
    }
    const XmlElement* const part = m_state.m_deviceToPartsTable != nullptr ? partAbove(element) : nullptr;
    return part != nullptr && isUnderNot(*part) && !isMet(*part) ? Need::Nothing : Need::Cover;
}

/// Whether an element under a `not` is met, for which it does not matter who has which device.
bool LinkAssignment::isMet(const XmlElement& element) const {
    const auto areAllMet = [this](const XmlElement& group) {
        bool areAll = true;
        for (const XmlElement* const child : childElements(group)) {
            areAll = areAll && isMet(*child);
        }
        return areAll;
    };
    switch (vocabulary::kindOf(element)) {
        case ElementKind::Device: return m_state.m_associations.hasEverMatched(&element);
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Part: return areAllMet(element);
        case ElementKind::Not: return element.FirstChildElement() == nullptr || !areAllMet(element);
        default: return true;
    }
}

std::vector<bool> LinkAssignment::groupsThatNeed(Need least) const {
    std::vector<bool> groups(m_needs.size());
    std::transform(m_needs.begin(), m_needs.end(), groups.begin(), [least](Need need) { return need >= least; });
    return groups;
}

std::vector<bool> LinkAssignment::watchedAmong(const AssociationLinks& links) {
    boost::unordered_flat_set<const IDeviceImp*> watched;
    for (const auto& device : ExtraDeviceSearch(m_state).watched()) {
        watched.insert(device.get());
    }
    std::vector<bool> among(links.devices.size());
    std::transform(links.devices.begin(), links.devices.end(), among.begin(),
                   [&watched](const auto& device) { return watched.contains(device.get()); });
    return among;
}

/// Puts the matching into the graph. Within its group every element keeps the device that the reduction gave it, as far
/// as the group still has that.
void LinkAssignment::take(const AssociationLinks& links, const Matching& matching, const GroupOf& groupOf) {
    std::vector<Pair> pairs;
    std::vector<bool> isGiven(links.devices.size(), false);
    boost::unordered_flat_set<const XmlElement*> had;
    boost::unordered_flat_set<const XmlElement*> has;
    for (const Pair& pair : links.kept) {
        had.insert(pair.element);
        if (matching.groupOf(pair.device) == groupOf.at(pair.element)) {
            pairs.push_back(pair);
            isGiven[pair.device] = true;
            has.insert(pair.element);
        }
    }
    const std::size_t keptPairs = pairs.size();
    std::vector<std::size_t> next(links.groups.size(), 0);
    for (Matching::Index device = 0; device < links.devices.size(); ++device) {
        const Matching::Index group = matching.groupOf(device);
        if (group == Matching::NONE || isGiven[device]) {
            continue;
        }
        const std::vector<const XmlElement*>& elements = links.groups[group].elements;
        while (has.contains(elements[next[group]])) {
            ++next[group];
        }
        pairs.push_back({elements[next[group]++], device});
    }
    if (keptPairs == links.kept.size() && pairs.size() == keptPairs) {
        return;
    }
    m_state.m_associations.assign(pairs);
    RunRecord& record = m_state.m_record;
    record.isAssignedExactly = true;
    for (const Pair& pair : pairs) {
        if (!had.contains(pair.element) && m_needs[groupOf.at(pair.element)] == Need::Device) {
            record.exactlyAssigned.push_back(pair.element);
        }
    }
    std::sort(record.exactlyAssigned.begin(), record.exactlyAssigned.end(), standsBefore);
}

}  // namespace vrx
