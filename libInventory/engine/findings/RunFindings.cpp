/// The public records are made when somebody asks: a host that only wants the verdict pays nothing for them.

#include "libInventory/engine/findings/RunFindings.h"

#include <algorithm>
#include <tuple>

#include "libCommon/text/UuCode.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/KeptLinks.h"
#include "libInventory/engine/matching/DeviceAttributes.h"
#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

const XmlElement* partAround(const XmlElement& element) {
    const XmlContainer* at = &element;
    while (at != nullptr) {
        const XmlElement* const around = at->ToElement();
        if (around != nullptr && vocabulary::kindOf(*around) == ElementKind::Part) {
            return around;
        }
        at = at->Parent();
    }
    return nullptr;
}

FindingKind kindOfUnsatisfied(const XmlElement& element) noexcept {
    switch (vocabulary::kindOf(element)) {
        case ElementKind::Device: return FindingKind::UnsatisfiedDevice;
        case ElementKind::Part: return FindingKind::UnsatisfiedPart;
        case ElementKind::And: return FindingKind::UnsatisfiedAnd;
        case ElementKind::Or: return FindingKind::UnsatisfiedOr;
        case ElementKind::Not: return FindingKind::UnsatisfiedNot;
        default: return FindingKind::UnsatisfiedOther;
    }
}

void readAttribute(Finding& finding, const FiledFindings::Entry& entry) {
    finding.key = entry.textOrEmpty();
    if (entry.kind != FindingKind::InvalidAttribute) {
        finding.expected.append(fromXmlSafe(finding.element->Attribute(finding.key)));
    }
}

void readProperty(Finding& finding, const FiledFindings::Entry& entry, FindingWords& words) {
    const PropertyExpectation& asked = words.expectation(entry.expectedEntries);
    finding.key = asked.key();
    finding.found = words.foundBy(entry, asked.key());
    finding.expected = asked.patterns();
}

bool comesBefore(const Finding& a, const Finding& b) {
    const auto rowAndColumn = [](const Finding& finding) {
        return std::tuple(finding.element->Row(), finding.element->Column());
    };
    return rowAndColumn(a) < rowAndColumn(b);
}

}  // namespace

Finding RunFindings::findingOn(const XmlElement& element, FindingKind kind) {
    Finding finding;
    finding.kind = kind;
    finding.element = &element;
    finding.part = partAround(element);
    return finding;
}

Finding RunFindings::findingOf(const XmlElement& element, const FiledFindings::Entry& entry, FindingWords& words) {
    Finding finding = findingOn(element, entry.kind);
    finding.device = entry.device;
    switch (entry.kind) {
        case FindingKind::InvalidDeviceType:
        case FindingKind::NoDeviceOfType:
        case FindingKind::NoAvailableDevice: finding.expected.append(typeTextOf(element)); break;
        case FindingKind::NoDeviceWithName:
        case FindingKind::NoDeviceWithOsLocator:
        case FindingKind::NoDeviceWithHwLocator:
        case FindingKind::InvalidAttribute: readAttribute(finding, entry); break;
        case FindingKind::PropertyOutsideDevice:
        case FindingKind::PropertyMissing:
        case FindingKind::PropertyMismatch:
        case FindingKind::PropertyMatched: readProperty(finding, entry, words); break;
        case FindingKind::InvalidExtraRule:
            finding.expected.append(element.Attribute(vocabulary::TYPE));
            finding.expected.append(element.Attribute(vocabulary::CAPABILITY));
            break;
        case FindingKind::UnexpectedException: finding.found = entry.textOrEmpty(); break;
        default: break;
    }
    words.append(entry, finding.texts);
    return finding;
}

Array<Finding> RunFindings::written() const {
    Array<Finding> findings;
    for (const RunRecord::Written& written : m_state.m_record.written) {
        const XmlElement& element = *written.element;
        FindingWords words(element, m_state.m_valuesOfRun.get());
        for (std::uint32_t i = 0; i < written.entries; ++i) {
            const FiledFindings& filed = *m_state.m_tipTables[written.slot].find(written.element);
            Finding& finding = findings.append(findingOf(element, filed.entries()[i], words));
            if (finding.kind == FindingKind::ExtraDevice) {
                finding.rule = ruleOf(element, written.slot, finding.device.get());
            }
        }
        if (written.isUnsatisfied) {
            findings.append(findingOn(element, kindOfUnsatisfied(element))).texts.append(words.ofUnsatisfied());
        }
    }
    // Matched properties of a single-device check were written before everything else.
    std::stable_sort(findings.begin(), findings.end(), comesBefore);
    return findings;
}

const XmlElement* RunFindings::ruleOf(const XmlElement& element, unsigned slot, const IDeviceImp* device) const {
    const auto* const extras = m_state.m_extraTables[slot].find(const_cast<XmlElement*>(&element));
    if (extras != nullptr) {
        for (const ExtraDevice& extra : *extras) {
            if (extra.device.get() == device) {
                return extra.rule;
            }
        }
    }
    return nullptr;
}

Array<Finding> RunFindings::notices() const {
    Array<Finding> findings;
    for (const RunRecord::Notice& notice : m_state.m_record.notices) {
        findings.append(findingOn(*notice.element, notice.kind));
    }
    return findings;
}

Array<ExtraDevice> RunFindings::extraDevices() const {
    const RunRecord& record = m_state.m_record;
    const XmlDocument& script = m_state.m_script;
    if (!record.hasKeptCombination || record.hasPassed) {
        return {};
    }
    const auto* const extras = m_state.m_extraTables[slot::BEST].find(const_cast<XmlElement*>(script.RootElement()));
    return extras != nullptr ? *extras : Array<ExtraDevice>();
}

RunFindings::Chosen RunFindings::chosen() const {
    Chosen chosen;
    for (const RunRecord::Choice& choice : m_state.m_record.keptChoices) {
        const XmlElement* alternative = choice.orElement->FirstChildElement();
        for (std::uint32_t i = 0; alternative && i < choice.selectedChild && alternative->NextSiblingElement(); ++i) {
            alternative = alternative->NextSiblingElement();
        }
        // An `or` without alternatives may have got an `error` by now.
        if (alternative != nullptr && vocabulary::kindOf(*alternative) != ElementKind::Error) {
            chosen[choice.orElement] = {choice.orElement, alternative, !choice.isPruned};
        }
    }
    return chosen;
}

namespace {

/// Visits the elements that take part in the kept combination, in document order, outside of devices.
template <typename Visit>
void walkKept(const XmlElement& element, const RunFindings::Chosen& chosen, bool isUnderNot, const Visit& visit) {
    visit(element, isUnderNot);
    switch (vocabulary::kindOf(element)) {
        case ElementKind::Or:
            if (const auto at = chosen.find(&element); at != chosen.end()) {
                walkKept(*at->second.alternative, chosen, isUnderNot, visit);
            }
            break;
        case ElementKind::InventoryCheck:
        case ElementKind::And:
        case ElementKind::Not:
        case ElementKind::Part: {
            const bool isNot = vocabulary::kindOf(element) == ElementKind::Not;
            for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
                walkKept(*child, chosen, isUnderNot || isNot, visit);
            }
            break;
        }
        default: break;
    }
}

}  // namespace

Array<ChosenAlternative> RunFindings::chosenAlternatives() const {
    Array<ChosenAlternative> alternatives;
    const Chosen chosenOnes = chosen();
    if (!chosenOnes.empty()) {
        walkKept(*m_state.m_script.RootElement(), chosenOnes, false, [&](const XmlElement& element, bool) {
            if (const auto at = chosenOnes.find(&element); at != chosenOnes.end()) {
                alternatives.append(at->second);
            }
        });
    }
    return alternatives;
}

Array<const XmlElement*> RunFindings::missingElements() const {
    Array<const XmlElement*> missing;
    if (!m_state.m_record.hasKeptCombination || m_state.m_record.hasPassed) {
        return missing;
    }
    const KeptLinks links(m_state);
    walkKept(*m_state.m_script.RootElement(), chosen(), false, [&](const XmlElement& element, bool isUnderNot) {
        if (!isUnderNot && vocabulary::kindOf(element) == ElementKind::Device && !links.isSatisfied(element)) {
            missing.append(&element);
        }
    });
    return missing;
}

}  // namespace vrx
