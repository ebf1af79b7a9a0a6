#include "libDiagnosis/certainty/HeldDevices.h"

#include "libInventory/Finding.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"

namespace vrx {

namespace {

const XmlElement* around(const XmlElement& element) {
    return element.Parent() != nullptr ? element.Parent()->ToElement() : nullptr;
}

}  // namespace

std::optional<Doubt> HeldDevices::mayGiveUp(const XmlElement& holder) {
    Elements pending{&holder};
    Elements tried;
    std::optional<Doubt> doubt;
    while (!pending.empty() && !doubt) {
        const XmlElement* const element = pending.back();
        pending.pop_back();
        if (const auto known = m_loose.find(element); known != m_loose.end()) {
            doubt = known->second;
        } else if (m_seen.insert(element).second) {
            tried.push_back(element);
            doubt = askOne(*element, pending);
            doubt = doubt ? doubt : askOtherAlternatives(*element, pending, tried);
        }
    }
    if (doubt) {
        m_loose.emplace(&holder, *doubt);
        for (const XmlElement* const element : tried) {  // which of them lead to it, nobody has looked
            m_seen.erase(element);
        }
    }
    return doubt;
}

/// Whether the element may have a device that was not seen; those who have what it could have instead are asked next.
std::optional<Doubt> HeldDevices::askOne(const XmlElement& element, Elements& pending) const {
    if (std::optional<Doubt> doubt = m_unknowns.hidden(CapabilityImp(attributeOf(element, vocabulary::TYPE)), false)) {
        return doubt;
    }
    for (const Candidate& other : m_inventory.outcomeOf(element).candidates) {
        if (other.failures.isEmpty() && other.holder != nullptr) {
            pending.push_back(other.holder);
        }
    }
    return std::nullopt;
}

std::optional<Doubt> HeldDevices::askOtherAlternatives(const XmlElement& holder, Elements& pending, Elements& tried) {
    const XmlElement* below = &holder;
    for (const XmlElement* group = around(*below); group != nullptr; below = group, group = around(*group)) {
        if (vocabulary::kindOf(*group) != vocabulary::ElementKind::Or || !m_seen.insert(group).second) {
            continue;
        }
        tried.push_back(group);
        for (ScriptWalk walk(*group, ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
            if (walk->element == below) {
                walk.skipContent();
            } else if (walk->kind == vocabulary::ElementKind::Device) {
                walk.skipContent();
                if (std::optional<Doubt> doubt = askOne(*walk->element, pending)) {
                    return doubt;
                }
            }
        }
    }
    return std::nullopt;
}

}  // namespace vrx
