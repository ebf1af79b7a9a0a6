/// Gathering: the findings of the chosen error slot become `error` children of the script's elements, and the elements'
/// run records go. What stands under an element, in this order: slot 0 (always shown), the chosen slot, and, under a
/// `device` that is in error there, what matching left in slot 1. An element without a run record, or whose findings
/// were made invisible, shows nothing; so nothing is ever written twice.

#include <utility>
#include <vector>

#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/PropertyExpectation.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

/// Puts what an entry stands for into words: one text a tip. The expectation is read before any `error` child is added,
/// which would count as one more expected entry.
void renderEntry(const FiledTips::Entry& entry, const PropertyExpectation& expectation, Array<String>& texts) {
    switch (entry.kind) {
        case FiledTips::Kind::Text: texts.append(entry.tip->toString(0, false)); return;
        case FiledTips::Kind::MissingKey:
            texts.append(concat(u"property key: ", expectation.key(), u" not found in Sysinfo ",
                                entry.device->type().toString(0, false), u" device: ", entry.device->name()));
            return;
        case FiledTips::Kind::Mismatch: {
            const IPropertyImp* const property = entry.device->findProperty(expectation.key());
            texts.append(concat(entry.device->hwLocator(), u" - ", expectation.key()));
            texts.append(u" Expected (regular expression): " + expectation.quoted());
            texts.append(u" did not match sysinfo value  : " +
                         (property != nullptr ? property->value().toString(true) : String()));
            return;
        }
    }
}

Array<String> renderTips(const FiledTips& tips, XmlElement& element) {
    const PropertyExpectation expectation(element);
    Array<String> texts(tips.count());
    for (const FiledTips::Entry& entry : tips.entries()) {
        renderEntry(entry, expectation, texts);
    }
    return texts;
}

}  // namespace

void Inventory::writeError(XmlElement* element, StringView text) {
    XmlDocument& document = m_state->m_script;
    XmlElement* const error = document.NewElement(vocabulary::ERROR);
    error->LinkEndChild(document.NewText(text));
    element->LinkEndChild(error);
}

unsigned Inventory::gatherErrorsForElement(XmlElement* element, unsigned slot) {
    State& state = *m_state;
    const ElementContext* const context = State::existingContext(element);
    if (context == nullptr || !context->m_errorsVisible) {
        return 0;
    }
    if (const Array<DeviceSpec>* const extras = state.m_extraTables[slot].find(element)) {
        state.m_extraDevices = *extras;
    }
    unsigned count = 0;
    if (const FiledTips* const tips = state.m_tipTables[slot].find(element)) {
        for (const String& text : renderTips(*tips, *element)) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"gatherErrorsForElement(" << slot << u") - " << locationOf(element) << text);
            writeError(element, text);
        }
        count = static_cast<unsigned>(tips->count());
    }
    return state.m_errorElementLists[slot].contains(element) ? count + gatherUnsatisfied(element) : count;
}

/// The error of an element that is itself unsatisfied. It counts as one also where nothing is written.
unsigned Inventory::gatherUnsatisfied(XmlElement* element) {
    const auto write = [&](const String& message, const String& detail) {
        writeError(element,
                   InventoryTip(message, m_state->m_scriptFileName, element, detail, String::EMPTY).toString(0, false));
    };
    const String nodeMessage = concat(u"unsatisfied ", element->Name(), u" node");
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Part: write(nodeMessage, element->Attribute(vocabulary::NAME)); break;
        case ElementKind::And:
        case ElementKind::Or: write(nodeMessage, String::EMPTY); break;
        case ElementKind::Not: write(u"matched device under not node", String::EMPTY); break;
        case ElementKind::Device:
            if (m_state->m_enableUnsatisfiedDeviceTips) {
                write(concat(u"Unsatisfied device of type: ", element->Attribute(vocabulary::TYPE)), String::EMPTY);
            }
            break;
        default: VRX_LOG(inventoryLog(), LogPriority::Error, u"unknown error errorElement: " << element->Name());
    }
    return 1;
}

void Inventory::gatherErrorsAndCleanUserData(XmlElement* element, unsigned slot) {
    if (element == nullptr) {
        return;
    }
    const ElementKind kind = vocabulary::kindOf(*element);
    if (kind == ElementKind::Error) {
        return;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"gatherErrorsAndCleanUserData(" << slot << u") - " << locationOf(element) << element->Name());
    gatherErrorsForElement(element, slot::SCRIPT);
    if (gatherErrorsForElement(element, slot) != 0 && kind == ElementKind::Device) {
        gatherErrorsForElement(element, slot::MATCHING);
        for (XmlElement* const child : childElements(element)) {
            gatherErrorsAndCleanUserData(child, slot::MATCHING);
        }
    }
    State::dropContext(element);
    for (XmlElement* const child : childElements(element)) {
        gatherErrorsAndCleanUserData(child, slot);
    }
}

// A run on a script that was run before finds findings of the earlier run in slot 1. They speak of the values of then,
// so they are put into words before anything can change.
void Inventory::settleFiledTips() {
    for (auto& entry : m_state->m_tipTables[slot::MATCHING]) {
        XmlElement* const element = entry.key;
        std::vector<FiledTips::Entry> settled;
        for (const String& text : renderTips(entry.value, *element)) {
            settled.push_back(
                {std::make_unique<InventoryTip>(text, m_state->m_scriptFileName, element, String::EMPTY, String::EMPTY),
                 boost::shared_ptr<IDeviceImp>(), FiledTips::Kind::Text});
        }
        entry.value.replaceEntries(std::move(settled));
    }
}

}  // namespace vrx
