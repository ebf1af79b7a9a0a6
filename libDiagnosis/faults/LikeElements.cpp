#include "libDiagnosis/faults/LikeElements.h"

#include <set>

#include "libDiagnosis/faults/AskedDevice.h"
#include "libDiagnosis/faults/MissingElement.h"
#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

String kindKey(const XmlElement& device) {
    String key = attributeOf(device, vocabulary::TYPE);
    for (const AskedProperty& property : askedProperties(device)) {
        if (isIdentity(property.key)) {
            continue;
        }
        key.append(u"\x1F").append(property.key);
        for (const String& pattern : property.patterns) {
            key.append(u"\x1E").append(pattern);
        }
    }
    return key;
}

}  // namespace

LikeElements::LikeElements(const Inventory& inventory) : m_inventory(inventory) {
    const Array<const XmlElement*> all = inventory.missingElements();
    const std::unordered_set<const XmlElement*> missing(all.begin(), all.end());
    std::set<StringView> types;
    for (const XmlElement* const element : all) {
        types.insert(attributeOf(*element, vocabulary::TYPE));
    }
    for (ScriptWalk walk(*inventory.script().RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        if (walk->kind != ElementKind::Device || walk->isUnderNot() || walk->alternative != nullptr ||
            !types.contains(attributeOf(*walk->element, vocabulary::TYPE))) {
            continue;
        }
        Group& group = m_groups[kindKey(*walk->element)];
        ++group.devices.asked;
        if (!missing.contains(walk->element)) {
            ++group.devices.present;
            group.present = group.present == nullptr ? walk->element : group.present;
        }
    }
}

LikeDevices LikeElements::of(const XmlElement& element) {
    const auto at = m_groups.find(kindKey(element));
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
