#include "libInventory/engine/ExtraDeviceRules.h"

#include "libCommon/xml/XmlWriter.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/findings/RunRecord.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libRegex/Regex.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

ExtraDeviceRules::ExtraDeviceRules(const Array<XmlElement*>& elements, const StateManager& store) {
    for (const XmlElement* const element : elements) {
        Rule rule{element,
                  CapabilityImp(element->Attribute(vocabulary::TYPE)),
                  CapabilityImp(element->Attribute(vocabulary::CAPABILITY)),
                  false,
                  String(),
                  nullptr,
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
                m_askable.push_back(DeviceContent::askableOf(*device));
                break;
            }
        }
    }
}

bool ExtraDeviceRules::covers(std::size_t rule, const IDeviceImp& device) const {
    return m_rules[rule].type.isCapable(device.type()) || m_rules[rule].capability.intersect(device.capabilities());
}

bool ExtraDeviceRules::satisfiesConstraints(std::size_t rule, std::size_t position, RunRecord& record) {
    Rule& asked = m_rules[rule];
    if (!asked.hasConstraints) {
        return true;
    }
    asked.answers.resize(m_covered.size(), Answer::Unknown);
    Answer& answer = asked.answers[position];
    if (answer == Answer::Unknown) {
        answer = ask(asked, position, record) ? Answer::Yes : Answer::No;
    }
    return answer == Answer::Yes;
}

bool ExtraDeviceRules::ask(Rule& rule, std::size_t position, RunRecord& record) const {
    const IDeviceImp& device = *m_covered[position];
    const Askable askable = m_askable[position];
    if (!rule.content) {
        rule.content = std::make_unique<const ContentTest>(rule.constraints);
    }
    if (askable == Askable::No || askable == Askable::Oddly || !rule.content->isReady()) {
        return Inventory::checkDevice(device, rule.constraints, nullptr, false);
    }
    logRun(rule, device, record);
    return askable == Askable::Yes && rule.content->holdsFor(device);
}

/// Contract: the log is told of a run of its own for every device, so for the lines there is one.
void ExtraDeviceRules::logRun(const Rule& rule, const IDeviceImp& device, RunRecord& record) {
    if (!inventoryLog().isEnabled(LogPriority::Info)) {
        return;
    }
    const std::uint64_t before = record.givenUpInTraces - Regex::exceededCount();
    Inventory::checkDevice(device, rule.constraints, nullptr, false);
    record.givenUpInTraces = before + Regex::exceededCount();
}

}  // namespace vrx
