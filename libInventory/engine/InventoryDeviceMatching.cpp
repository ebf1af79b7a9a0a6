/// Which devices satisfy one `device` element: those of its type that pass its name and locator attributes, in the
/// order in which the attributes stand, and then the tests inside it. Every device that passes is linked to the
/// element; choosing one is left to the graph. When none passes, a tip says at which step the last candidates were
/// lost.
///
/// Contract: `name` is a pattern and the locators are compared exactly, although the header of generated scripts says
/// it the other way round.

#include <utility>

#include "libCommon/text/UuCode.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/CandidateSearch.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/MatchCache.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

enum class AttributeKind { Type, Name, OsLocator, HwLocator, Invalid };

AttributeKind kindOfAttribute(StringView name) noexcept {
    if (equalNoCase(name, vocabulary::TYPE)) {
        return AttributeKind::Type;
    }
    if (equalNoCase(name, vocabulary::NAME)) {
        return AttributeKind::Name;
    }
    if (equalNoCase(name, vocabulary::OS_LOCATOR)) {
        return AttributeKind::OsLocator;
    }
    return equalNoCase(name, vocabulary::HW_LOCATOR) ? AttributeKind::HwLocator : AttributeKind::Invalid;
}

/// The attribute written `type`, else the first whose name equals it without letter case; empty when there is none.
StringView typeTextOf(const XmlElement& element) {
    if (const XmlAttribute* const exact = element.FindAttribute(vocabulary::TYPE)) {
        return exact->Value();
    }
    for (const XmlAttribute& attribute : element.Attributes()) {
        if (equalNoCase(attribute.Name(), vocabulary::TYPE)) {
            return attribute.Value();
        }
    }
    return StringView();
}

/// One filter attribute of the element as a message quotes it.
struct QuotedFilter {
    StringView tipWord;
    StringView logWord;
    StringView text;
};

}  // namespace

bool Inventory::failDevice(XmlElement* element, const String& message, unsigned slot) {
    appendTip(element, InventoryTip(message, m_state->m_scriptFileName, element, String::EMPTY, String::EMPTY), slot);
    return false;
}

bool Inventory::matchDevice(XmlElement* element, bool underNot, unsigned associationIndex) {
    if (element == nullptr) {
        return false;
    }
    State& state = *m_state;
    state.m_associationSets[associationIndex].associate(element, boost::shared_ptr<IDeviceImp>());
    VRX_LOG(
        inventoryLog(), LogPriority::Debug,
        u"matchDevice() invElement" << locationOf(element) << u" devCount: " << state.m_stateManager->deviceCount());
    // Findings in an alternative are counted, so they must be made each time.
    const bool mayUseCache =
        state.m_matchCache != nullptr && associationIndex == 0 && !inventoryLog().isEnabled(LogPriority::Debug);
    return mayUseCache ? matchThroughCache(element, underNot) : matchInStore(element, underNot, associationIndex);
}

bool Inventory::matchThroughCache(XmlElement* element, bool underNot) {
    State& state = *m_state;
    InventoryDeviceAssociations& associations = state.m_associationSets[0];
    const String text = element->toString();
    if (const MatchCache::DeviceArray* const known = state.m_matchCache->find(text)) {
        for (const auto& device : *known) {
            associations.associate(element, device);
        }
        return !known->isEmpty();
    }
    const bool matched = matchInStore(element, underNot, 0);
    MatchCache::DeviceArray devices;
    associations.getMatchedDevices(element, devices);
    state.m_matchCache->keep(text, std::move(devices));
    return matched;
}

bool Inventory::matchInStore(XmlElement* element, bool underNot, unsigned associationIndex) {
    const State& state = *m_state;
    const StateManager& store = *state.m_stateManager;
    const StringView type = typeTextOf(*element);
    const CapabilityImp capability(type);
    if (capability == CapabilityImp::INVALID()) {
        return failDevice(
            element, concat(u"Invalid device type: ", type, u" Please refer to Valid Device Types in Documentation"),
            slot::SCRIPT);
    }
    if (store.devicesCapableOf(capability).isEmpty()) {
        return failDevice(element, concat(u"No device of type: ", type), slot::MATCHING);
    }

    CandidateSearch search(store, capability);
    Array<QuotedFilter> quoted;
    const XmlAttribute* invalidAttribute = nullptr;
    const auto addFilter = [&](bool enabled, CandidateSearch::FilterKind kind, const XmlAttribute& attribute,
                               StringView tipWord, StringView logWord) {
        if (enabled) {
            search.addFilter(kind, fromXmlSafe(attribute.Value()));
            quoted.append({tipWord, logWord, attribute.Value()});
        }
    };
    for (const XmlAttribute& attribute : element->Attributes()) {
        switch (kindOfAttribute(attribute.Name())) {
            case AttributeKind::Type: break;
            case AttributeKind::Name:
                addFilter(state.m_checkNames, CandidateSearch::FilterKind::Name, attribute, u"name", u"name");
                break;
            case AttributeKind::OsLocator:
                addFilter(state.m_checkOsLocators, CandidateSearch::FilterKind::OsLocator, attribute, u"oslocator",
                          u"osLocator");
                break;
            case AttributeKind::HwLocator:
                addFilter(state.m_checkHwLocators, CandidateSearch::FilterKind::HwLocator, attribute, u"hwlocator",
                          u"hwlocator");
                break;
            case AttributeKind::Invalid: invalidAttribute = &attribute; break;
        }
        if (invalidAttribute != nullptr) {
            break;
        }
    }

    const auto& candidates = search.find();
    if (candidates.isEmpty() && !quoted.isEmpty()) {
        const QuotedFilter& filter = quoted[search.firstExhaustedFilter()];
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchDevice: No device of type: " << type << u" with " << filter.logWord << u": " << filter.text);
        return failDevice(element, concat(u"No device of type: ", type, u" with ", filter.tipWord, u": ", filter.text),
                          slot::MATCHING);
    }
    if (invalidAttribute != nullptr) {
        return failDevice(element, concat(u"Invalid attribute ", invalidAttribute->Name()), slot::MATCHING);
    }
    if (candidates.isEmpty()) {
        return failDevice(element, concat(u"No available device of type: ", type), slot::MATCHING);
    }
    return matchCandidates(element, candidates, underNot, associationIndex);
}

bool Inventory::matchCandidates(XmlElement* element, const Array<boost::shared_ptr<IDeviceImp>>& candidates,
                                bool underNot, unsigned associationIndex) {
    bool anyMatched = false;
    bool first = true;
    for (const auto& device : candidates) {
        const bool ok = matchCandidate(element, device, underNot, first);
        first = false;
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchDevice: device guid: " << device->toString() << u" recursive result = " << ok);
        if (ok) {
            m_state->m_associationSets[associationIndex].associate(element, device);
            anyMatched = true;
        }
    }
    return anyMatched;
}

/// Every child is evaluated, also after one has failed, so that every failing test leaves its tips.
bool Inventory::matchCandidate(XmlElement* element, const boost::shared_ptr<IDeviceImp>& device, bool underNot,
                               bool report) {
    bool ok = true;
    for (XmlElement* const child : childElements(element)) {
        if (!matchDeviceRecursive(child, element, device, underNot, report)) {
            ok = false;
            VRX_LOG(
                inventoryLog(), LogPriority::Debug,
                u"matchDevice: device guid: " << device->toString() << u" element " << locationOf(child) << u" failed");
        }
    }
    return ok;
}

}  // namespace vrx
