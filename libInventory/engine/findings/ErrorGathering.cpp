/// Gathering: the findings of the chosen error slot become `error` children of the script's elements, and the elements'
/// run records go. What stands under an element, in this order: slot 0 (always shown), the chosen slot, and, under a
/// `device` that is in error there, what matching left in slot 1. An element without a run record, or whose findings
/// were made invisible, shows nothing; so nothing is ever written twice.
///
/// What was written is put down in the run's record, and the values that it quotes are copied: the findings that are
/// handed out later say what the script says.

#include "libInventory/engine/findings/ErrorGathering.h"

#include <utility>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/FindingWords.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

void copyValue(FiledFindings::Entry& entry, const FindingWords& words, StringView key) {
    if (entry.kind == FindingKind::PropertyMismatch && !entry.text) {
        entry.text = std::make_unique<const String>(words.foundBy(entry, key));
    }
}

Array<Inventory::DeviceSpec> specsOf(const Array<ExtraDevice>& extras) {
    Array<Inventory::DeviceSpec> specs(extras.size());
    for (const ExtraDevice& extra : extras) {
        const IDeviceImp& device = *extra.device;
        specs.append({device.name(), device.type().toString(0, false), device.hwLocator(), device.osLocator()});
    }
    return specs;
}

}  // namespace

void ErrorGathering::writeError(XmlElement* element, StringView text) {
    if (!m_state.keepsFindings()) {
        return;
    }
    XmlDocument& document = m_state.m_script;
    XmlElement* const error = document.NewElement(vocabulary::ERROR);
    error->LinkEndChild(document.NewText(text));
    element->LinkEndChild(error);
}

unsigned ErrorGathering::gatherElement(XmlElement* element, unsigned slot) {
    const ElementContext* const context = InventoryState::existingContext(element);
    if (context == nullptr || !context->m_errorsVisible) {
        return 0;
    }
    if (const Array<ExtraDevice>* const extras = m_state.m_extraTables[slot].find(element)) {
        m_state.m_extraDevices = specsOf(*extras);
    }
    const unsigned count = writeFindings(element, slot);
    const bool isUnsatisfied = m_state.m_errorElementLists[slot].contains(element);
    const bool isTold = isUnsatisfied && writeUnsatisfied(element);
    if ((count > 0 || isTold) && m_state.keepsFindings()) {
        const FiledFindings* const filed = m_state.m_tipTables[slot].find(element);
        const auto entries = static_cast<std::uint32_t>(filed != nullptr ? filed->entries().size() : 0);
        m_state.m_record.written.push_back({element, slot, entries, isTold});
    }
    return count + (isUnsatisfied ? 1 : 0);
}

unsigned ErrorGathering::writeFindings(XmlElement* element, unsigned slot) {
    FiledFindings* const filed = m_state.m_tipTables[slot].find(element);
    if (filed == nullptr) {
        return 0;
    }
    if (!m_state.keepsFindings() && !inventoryLog().isEnabled(LogPriority::Debug)) {
        return static_cast<unsigned>(filed->count());  // nobody reads the texts
    }
    // All texts come first: an `error` child would count as one more entry that the element asks for.
    Array<String> texts(filed->count());
    FindingWords words(*element, m_state.m_valuesOfRun.get());
    for (FiledFindings::Entry& entry : filed->entries()) {
        copyValue(entry, words, element->Attribute(vocabulary::KEY));
        words.append(entry, texts);
    }
    for (const String& text : texts) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"gatherErrorsForElement(" << slot << u") - " << placeOf(element) << text);
        writeError(element, text);
    }
    return static_cast<unsigned>(texts.size());
}

/// The error of an element that is itself unsatisfied; false when there is none to write.
bool ErrorGathering::writeUnsatisfied(XmlElement* element) {
    const String text = FindingWords(*element, nullptr).ofUnsatisfied();
    if (text.isEmpty()) {
        VRX_LOG(inventoryLog(), LogPriority::Error, u"unknown error errorElement: " << element->Name());
        return false;
    }
    if (vocabulary::kindOf(*element) == ElementKind::Device && !m_state.m_enableUnsatisfiedDeviceTips) {
        return false;
    }
    writeError(element, text);
    return true;
}

void ErrorGathering::gatherAndClean(XmlElement* element, unsigned slot) {
    if (element == nullptr) {
        return;
    }
    const ElementKind kind = vocabulary::kindOf(*element);
    if (kind == ElementKind::Error) {
        return;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"gatherErrorsAndCleanUserData(" << slot << u") - " << placeOf(element) << element->Name());
    gatherElement(element, slot::SCRIPT);
    if (gatherElement(element, slot) != 0 && kind == ElementKind::Device) {
        gatherElement(element, slot::MATCHING);
        for (XmlElement* const child : childElements(element)) {
            gatherAndClean(child, slot::MATCHING);
        }
    }
    InventoryState::dropContext(element);
    for (XmlElement* const child : childElements(element)) {
        gatherAndClean(child, slot);
    }
}

// A run on a script that was run before finds findings of the earlier run in slots 0 and 1. They speak of the values of
// then.
void ErrorGathering::settle() {
    for (auto& entry : m_state.m_tipTables[slot::MATCHING]) {
        const FindingWords words(*entry.key, m_state.m_valuesOfRun.get());
        for (FiledFindings::Entry& filed : entry.value.entries()) {
            copyValue(filed, words, entry.key->Attribute(vocabulary::KEY));
        }
    }
    m_state.m_valuesOfRun.reset();
    for (const unsigned slot : {slot::SCRIPT, slot::MATCHING}) {
        for (auto& entry : m_state.m_tipTables[slot]) {
            entry.value.beginRun();
        }
    }
}

}  // namespace vrx
