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
    if (isAsked && leavesSomethingUndone()) {
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

/// The choice depends on nothing but the links, so that a run that only asks whether it would be another needs no more.
void LinkAssignment::assignExactly() {
    NamedLinks named = m_state.m_associations.links();
    const std::vector<Need> needs = needsOf(named);
    const std::vector<bool> isWatched = watchedAmong(named);
    const ExactAssignment exact(named.links, needs, isWatched);
    if (!exact.isOther()) {
        return;
    }
    RunRecord& record = m_state.m_record;
    record.couldGainByExactness = true;
    if (!m_state.m_assignsExactly) {
        return;
    }
    m_state.m_associations.assign(exact.pairs());
    record.isAssignedExactly = true;
    for (const std::uint32_t element : exact.newlyServed()) {
        record.exactlyAssigned.push_back(named.elements[element]);
    }
    std::sort(record.exactlyAssigned.begin(), record.exactlyAssigned.end(), standsBefore);
}

RunRecord::Links LinkAssignment::exactLinks() {
    NamedLinks named = m_state.m_associations.links();
    const std::vector<Need> needs = needsOf(named);
    const std::vector<bool> isWatched = watchedAmong(named);
    const ExactAssignment exact(named.links, needs, isWatched);
    RunRecord::Links links;
    for (const auto& [element, device] : exact.pairs()) {
        links.emplace_back(named.elements[element], named.devices[device].get());
    }
    return links;
}

std::vector<LinkAssignment::Need> LinkAssignment::needsOf(const NamedLinks& named) const {
    std::vector<Need> needs;
    for (const XmlElement* const element : named.elements) {
        needs.push_back(needOf(*element));
    }
    return needs;
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

std::vector<bool> LinkAssignment::watchedAmong(const NamedLinks& named) {
    boost::unordered_flat_set<const IDeviceImp*> watched;
    for (const auto& device : ExtraDeviceSearch(m_state).watched()) {
        watched.insert(device.get());
    }
    std::vector<bool> among(named.devices.size());
    std::transform(named.devices.begin(), named.devices.end(), among.begin(),
                   [&watched](const auto& device) { return watched.contains(device.get()); });
    return among;
}

}  // namespace vrx
