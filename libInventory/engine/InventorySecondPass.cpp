/// The second pass decides every element of the script for one combination of alternatives, from the reduced graph
/// alone: no device is matched again. It lists the devices that are missing, files errors in the slot of the iteration,
/// adds up the iteration's error measure, and enters satisfied parts into the device-to-parts table.
///
/// Every level that fails adds the count of its whole subtree, so an error deep in the tree counts once at each failing
/// ancestor. That weighting is deliberate: combinations are compared by these sums.

#include <optional>

#include "libCommon/Assertion.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/UniqueTexts.h"

namespace vrx {

using vocabulary::ElementKind;

bool Inventory::runSecondPass(XmlElement* element, bool underNot, unsigned passNumber, unsigned errorsIndex,
                              ErrorSpec& errors) {
    if (element == nullptr) {
        return true;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runSecondPass() - " << locationOf(element) << element->Name());
    bool satisfied = true;
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Part: satisfied = secondPassOfPart(element, underNot, passNumber, errorsIndex, errors); break;
        case ElementKind::And:
            satisfied = secondPassOfAll(element, underNot, passNumber, errorsIndex, errors);
            if (!satisfied) {
                prependErrorElement(element, errorsIndex);
            }
            break;
        case ElementKind::InventoryCheck:
            satisfied = secondPassOfAll(element, underNot, passNumber, errorsIndex, errors);
            break;
        case ElementKind::Or:
            if (skipsPrunedOr(element, errorsIndex, errors)) {
                return false;
            }
            if (element->FirstChildElement() == nullptr) {
                m_state->contextOf(element).m_atLastChild = true;
                return true;
            }
            satisfied = secondPassOfOr(element, underNot, passNumber, errorsIndex, errors);
            break;
        case ElementKind::Not: satisfied = secondPassOfNot(element, passNumber, errorsIndex, errors); break;
        case ElementKind::Device: satisfied = secondPassOfDevice(element, underNot, errorsIndex); break;
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"runSecondPass() - " << locationOf(element) << element->Name() << u" status = " << satisfied);
    if (satisfied) {
        clearErrors(element, errorsIndex);
    } else {
        getErrorCount(element, errorsIndex, errors);
    }
    return satisfied;
}

bool Inventory::secondPassOfAll(XmlElement* element, bool underNot, unsigned passNumber, unsigned errorsIndex,
                                ErrorSpec& errors) {
    bool all = true;
    for (XmlElement* const child : childElements(element)) {
        all = runSecondPass(child, underNot, passNumber, errorsIndex, errors) && all;
    }
    return all;
}

bool Inventory::secondPassOfPart(XmlElement* element, bool underNot, unsigned passNumber, unsigned errorsIndex,
                                 ErrorSpec& errors) {
    const bool satisfied = secondPassOfAll(element, underNot, passNumber, errorsIndex, errors);
    if (!satisfied) {
        prependErrorElement(element, errorsIndex);
    }
    if (m_state->m_deviceToPartsTable == nullptr) {
        return satisfied;
    }
    if (satisfied) {
        enterPart(element, underNot);
        return true;
    }
    for (XmlElement* const child : childElements(element)) {
        removeDeviceAssociations(child);
    }
    return false;
}

/// Enters the part once under each of its devices, never twice under one device for the same name.
void Inventory::enterPart(XmlElement* part, bool underNot) {
    PartSpec spec(part->Attribute(vocabulary::NAME), part->Attribute(vocabulary::ID),
                  part->Attribute(vocabulary::DESCRIPTION), locationOf(part), String::EMPTY);
    UniqueTexts deviceGuids;
    for (XmlElement* const child : childElements(part)) {
        runPartAssociation(child, underNot, spec, deviceGuids);
    }
    spec.devices = deviceGuids.texts();
    for (const String& guid : spec.devices) {
        Array<PartSpec>& parts = (*m_state->m_deviceToPartsTable)[guid];
        bool isListed = false;
        for (const PartSpec& listed : parts) {
            isListed = isListed || listed == spec;
        }
        if (!isListed) {
            parts.append(spec);
        }
    }
}

/// A hopeless `or` is looked into once, so that the best of its alternatives shows its errors; after that it only gets
/// an error of its own.
bool Inventory::skipsPrunedOr(XmlElement* element, unsigned errorsIndex, ErrorSpec& errors) {
    ElementContext* const context = State::existingContext(element);
    VRX_ASSERT(context);
    if (!context->m_pruned) {
        return false;
    }
    if (!context->m_visited) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"runSecondPass() - " << locationOf(element) << u" pruned, setting as visited");
        context->m_visited = true;
        return false;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runSecondPass() - " << locationOf(element) << u" pruned, skipping");
    prependErrorElement(element, errorsIndex);
    getErrorCount(element, errorsIndex, errors);
    return true;
}

bool Inventory::secondPassOfOr(XmlElement* element, bool underNot, unsigned passNumber, unsigned errorsIndex,
                               ErrorSpec& errors) {
    XmlElement* chosen = element->FirstChildElement();
    const std::uint32_t steps = State::existingContext(element)->m_selectedChild;
    for (std::uint32_t i = 0; i < steps; ++i) {
        XmlElement* const next = chosen->NextSiblingElement();
        if (next == nullptr) {
            break;
        }
        chosen = next;
    }
    const bool satisfied = runSecondPass(chosen, underNot, passNumber, errorsIndex, errors);
    if (!satisfied) {
        prependErrorElement(element, errorsIndex);
    }
    return satisfied;
}

bool Inventory::secondPassOfNot(XmlElement* element, unsigned passNumber, unsigned errorsIndex, ErrorSpec& errors) {
    const bool all = secondPassOfAll(element, true, passNumber, errorsIndex, errors);
    const bool satisfied = element->FirstChildElement() == nullptr || !all;
    if (!satisfied) {
        prependErrorElement(element, errorsIndex);
    }
    return satisfied;
}

/// Contract: an absent device that a `not` forbids is listed as unsatisfied although the `not` is satisfied.
bool Inventory::secondPassOfDevice(XmlElement* element, bool underNot, unsigned errorsIndex) {
    const InventoryDeviceAssociations& associations = m_state->m_associations;
    const bool satisfied = associations.isSatisfied(element);
    if (satisfied || (underNot && associations.hasEverMatched(element))) {
        return true;
    }
    addUnsatisfiedDevice(element);
    prependErrorElement(element, errorsIndex);
    return false;
}

}  // namespace vrx
