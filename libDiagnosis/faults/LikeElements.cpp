#include "libDiagnosis/faults/LikeElements.h"

#include <set>

#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"

namespace vrx {

LikeElements::LikeElements(const Inventory& inventory, WantedDevices& asked) : m_inventory(inventory), m_asked(asked) {
    const Array<const XmlElement*> all = inventory.missingElements();
    const std::unordered_set<const XmlElement*> missing(all.begin(), all.end());
    std::set<StringView> types;
    for (const XmlElement* const element : all) {
        types.insert(attributeOf(*element, vocabulary::TYPE));
    }
    for (ScriptWalk walk(*inventory.script().RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        if (walk->kind != vocabulary::ElementKind::Device) {
            continue;
        }
        walk.skipContent();
        if (walk->isUnderNot() || walk->alternative != nullptr ||
            !types.contains(attributeOf(*walk->element, vocabulary::TYPE))) {
            continue;
        }
        Group& group = m_groups[m_asked.kindOf(*walk->element)];
        ++group.devices.asked;
        if (!missing.contains(walk->element)) {
            ++group.devices.present;
            group.present = group.present == nullptr ? walk->element : group.present;
        }
    }
}

LikeDevices LikeElements::of(const XmlElement& element) {
    const auto at = m_groups.find(m_asked.kindOf(element));
    if (at == m_groups.end()) {
        return {};
    }
    Group& group = at->second;
    if (group.present != nullptr && !group.devices.one) {
        for (const Candidate& candidate : m_inventory.outcomeOf(*group.present).candidates) {
            if (candidate.holder == group.present) {
                group.devices.one = identityOf(*candidate.device);
            }
        }
        group.present = nullptr;
    }
    return group.devices;
}

}  // namespace vrx
