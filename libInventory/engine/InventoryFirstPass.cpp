/// The first pass walks the script once, before any combination is tried. It matches every `device` element, records
/// the links in the association set of the nearest alternative, and settles the shape of the search: which alternatives
/// of each `or` can be met at all, how many combinations there are, which alternative of a hopeless `or` came nearest,
/// and which `fail-on-extra` rules are in force. Mistakes in the script are told to the observers.
///
/// Every child is evaluated even after one failed: the findings of all are wanted.

#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

using vocabulary::ElementKind;

bool Inventory::runFirstPass(XmlElement* element, ErrorSpec& errors, bool underNot, unsigned associationIndex) {
    if (element == nullptr) {
        return true;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runFirstPass() - " << locationOf(element) << element->Name());
    bool status = true;
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Part:
        case ElementKind::And:
        case ElementKind::InventoryCheck: status = firstPassOfAll(element, errors, underNot, associationIndex); break;
        case ElementKind::Or: status = firstPassOfOr(element, errors, underNot); break;
        case ElementKind::Not: status = firstPassOfNot(element, errors, underNot, associationIndex); break;
        case ElementKind::Device: status = matchDevice(element, underNot, associationIndex); break;
        case ElementKind::TestSet: break;
        case ElementKind::FailOnExtra:
            if (!firstPassOfFailOnExtra(element)) {
                return false;
            }
            break;
        default: reportUnknownElement(*element);
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"runFirstPass() - " << locationOf(element) << element->Name() << u" status = " << status);
    return status;
}

bool Inventory::firstPassOfAll(XmlElement* element, ErrorSpec& errors, bool underNot, unsigned associationIndex) {
    bool all = true;
    for (XmlElement* const child : childElements(element)) {
        all = runFirstPass(child, errors, underNot, associationIndex) && all;
    }
    return all;
}

bool Inventory::firstPassOfOr(XmlElement* element, ErrorSpec& errors, bool underNot) {
    State& state = *m_state;
    ElementContext& context = state.contextOf(element);
    std::uint32_t possibleChildren = 0;
    std::uint32_t bestErrorPermutation = 0;
    ErrorSpec previous;
    std::uint32_t position = 0;
    for (XmlElement* const child : childElements(element)) {
        if (firstPassOfAlternative(child, errors, underNot)) {
            ++possibleChildren;
        } else {
            ErrorSpec current;
            getErrorCount(child, slot::MATCHING, current);
            if (position == 0) {
                previous = current;
            }
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"runFirstPass() currentErrors: " << current.numErrors << u"," << current.indexSum
                                                      << u" previousErrors: " << previous.numErrors << u","
                                                      << previous.indexSum);
            if (current.isBetterThan(previous)) {
                bestErrorPermutation = position;
                previous = current;
            }
        }
        ++position;
    }
    if (possibleChildren > 0) {
        state.m_totalCombinations *= possibleChildren;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runFirstPass() or branch, possibleChildren: " << possibleChildren);
    if (possibleChildren > 0) {
        return true;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"runFirstPass() pruning or branch, bestErrorPermutation: " << bestErrorPermutation);
    context.m_pruned = true;
    context.m_selectedChild = bestErrorPermutation;
    return false;
}

bool Inventory::firstPassOfAlternative(XmlElement* child, ErrorSpec& errors, bool underNot) {
    State& state = *m_state;
    const std::size_t set = state.m_associationSets.size();
    state.m_associationSets.emplace();
    ElementContext& context = state.makeContext(child);
    context.m_associationIndex = static_cast<std::int32_t>(set);
    const bool satisfied = runFirstPass(child, errors, underNot, static_cast<unsigned>(set));
    if (!satisfied) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"runFirstPass() pruning or child branch");
    }
    context.m_pruned = !satisfied;
    return satisfied;
}

bool Inventory::firstPassOfNot(XmlElement* element, ErrorSpec& errors, bool underNot, unsigned associationIndex) {
    if (underNot) {
        reportNotUnderNot(*element);
    }
    if (element->FirstChildElement() == nullptr) {
        return true;
    }
    return !firstPassOfAll(element, errors, true, associationIndex);
}

bool Inventory::firstPassOfFailOnExtra(XmlElement* element) {
    const StringView type = element->Attribute(vocabulary::TYPE);
    const StringView capability = element->Attribute(vocabulary::CAPABILITY);
    if (CapabilityImp(type) == CapabilityImp::INVALID() && CapabilityImp(capability) == CapabilityImp::INVALID()) {
        return failDevice(element,
                          concat(u"Invalid device type: ", type, u" and Invalid device capability: ", capability,
                                 u" Please refer to Valid Device Types in Documentation"),
                          slot::SCRIPT);
    }
    m_state->m_failOnExtraElements.append(element);
    return true;
}

}  // namespace vrx
