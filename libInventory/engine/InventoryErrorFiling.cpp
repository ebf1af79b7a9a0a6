/// Filing findings: every finding of a run is put down against a script element in one of four error slots, counted
/// there, and forgotten again when the element turns out satisfied. The script itself is not touched while the search
/// runs; InventoryErrorGathering.cpp writes the chosen slot into it at the end.

#include "libCommon/Assertion.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

void Inventory::prependErrorElement(XmlElement* element, unsigned slot) {
    m_state->contextOf(element);
    m_state->m_errorElementLists[slot].prepend(element);
}

void Inventory::appendErrorElement(XmlElement* element, unsigned slot) {
    m_state->contextOf(element);
    m_state->m_errorElementLists[slot].append(element);
}

void Inventory::prependTip(XmlElement* element, const InventoryTip& tip, unsigned slot) {
    VRX_ASSERT(element);
    m_state->contextOf(element);
    m_state->m_tipTables[slot][element].prepend(tip);
}

void Inventory::appendTip(XmlElement* element, const InventoryTip& tip, unsigned slot) {
    VRX_ASSERT(element);
    m_state->contextOf(element);
    m_state->m_tipTables[slot][element].append(tip);
}

void Inventory::appendExtra(XmlElement* element, const DeviceSpec& spec, unsigned slot) {
    VRX_ASSERT(element);
    m_state->contextOf(element);
    m_state->m_extraTables[slot][element].append(spec);
}

void Inventory::appendPropertyTip(XmlElement* deviceElement, XmlElement* propertyElement, const String& message,
                                  const String& file, unsigned slot) {
    VRX_ASSERT(deviceElement);
    VRX_ASSERT(propertyElement);
    appendTip(propertyElement, InventoryTip(message, file, propertyElement, String::EMPTY, String::EMPTY), slot);
}

void Inventory::appendPropertyFailure(XmlElement* propertyElement, std::uint8_t kind,
                                      const boost::shared_ptr<IDeviceImp>& device) {
    m_state->contextOf(propertyElement);
    m_state->m_tipTables[slot::MATCHING][propertyElement].appendFailure(FiledTips::Kind{kind}, device);
}

void Inventory::clearErrors(XmlElement* element, unsigned slot) {
    if (element == nullptr) {
        return;
    }
    State& state = *m_state;
    State::TipTable& tips = state.m_tipTables[slot];
    ErrorElementList& errorElements = state.m_errorElementLists[slot];
    const bool nothingFiled = tips.isEmpty() && errorElements.isEmpty();
    if (nothingFiled && !inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"clearErrors() - " << locationOf(element) << element->Name());
    if (FiledTips* const filed = tips.find(element)) {
        filed->clear();
    }
    errorElements.removeFirst(element);
    for (XmlElement* const child : childElements(element)) {
        clearErrors(child, slot);
    }
}

void Inventory::getErrorCount(XmlElement* element, unsigned slot, ErrorSpec& spec) {
    if (element == nullptr) {
        return;
    }
    const State& state = *m_state;
    const State::TipTable& tips = state.m_tipTables[slot];
    const ErrorElementList& errorElements = state.m_errorElementLists[slot];
    if (tips.isEmpty() && errorElements.isEmpty()) {
        return;
    }
    const ElementContext* const context = State::existingContext(element);
    const FiledTips* const filed = tips.find(element);
    const bool isErrorElement = errorElements.contains(element);
    spec.numErrors += filed != nullptr ? static_cast<std::uint32_t>(filed->count()) : 0;
    spec.numErrors += isErrorElement ? 1 : 0;
    if ((filed != nullptr || isErrorElement) && context != nullptr) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"getErrorCount(" << element->Name() << u") index: " << context->m_andIndex);
        spec.indexSum += context->m_andIndex;
    }
    for (XmlElement* const child : childElements(element)) {
        ErrorSpec ofChild;
        getErrorCount(child, slot, ofChild);
        spec.numErrors += ofChild.numErrors;
        spec.indexSum += ofChild.indexSum;
        if (ofChild.numErrors != 0 && context != nullptr) {
            spec.indexSum += context->m_andIndex;
        }
    }
}

void Inventory::addUnsatisfiedDevice(XmlElement* element) {
    m_state->m_unsatisfiedDevices.append(DeviceSpec(element->NormalizedAttributeValue(vocabulary::NAME),
                                                    element->NormalizedAttributeValue(vocabulary::TYPE),
                                                    element->NormalizedAttributeValue(vocabulary::HW_LOCATOR),
                                                    element->NormalizedAttributeValue(vocabulary::OS_LOCATOR)));
}

}  // namespace vrx
