#include "libInventory/engine/ExtraDeviceRules.h"

#include "libCommon/xml/XmlWriter.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

ExtraDeviceRules::ExtraDeviceRules(const Array<XmlElement*>& elements, const StateManager& store) {
    for (const XmlElement* const element : elements) {
        Rule rule{element,
                  CapabilityImp(element->Attribute(vocabulary::TYPE)),
                  CapabilityImp(element->Attribute(vocabulary::CAPABILITY)),
                  false,
                  String(),
                  {}};
        rule.hasConstraints = element->FirstChildElement() != nullptr;
        for (const XmlNode* child = element->FirstChild(); child != nullptr; child = child->NextSibling()) {
            rule.constraints.append(compactText(*child));
        }
        m_rules.push_back(std::move(rule));
    }
    for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
        for (std::size_t rule = 0; rule < m_rules.size(); ++rule) {
            if (covers(rule, *device)) {
                m_covered.append(device);
                break;
            }
        }
    }
}

bool ExtraDeviceRules::covers(std::size_t rule, const IDeviceImp& device) const {
    return m_rules[rule].type.isCapable(device.type()) || m_rules[rule].capability.intersect(device.capabilities());
}

bool ExtraDeviceRules::satisfiesConstraints(std::size_t rule, const IDeviceImp& device) {
    Rule& asked = m_rules[rule];
    if (!asked.hasConstraints) {
        return true;
    }
    const auto [answer, isNew] = asked.answers.try_emplace(&device, false);
    if (isNew) {
        answer->second = Inventory::checkDevice(device, asked.constraints, nullptr, false);
    }
    return answer->second;
}

}  // namespace vrx
