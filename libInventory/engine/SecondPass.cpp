/// The second pass decides every element of the script for one combination of alternatives, from the reduced graph
/// alone: no device is matched again. It lists the devices that are missing, files errors in the slot of the iteration,
/// adds up the iteration's error measure, and enters satisfied parts into the device-to-parts table.
///
/// Every level that fails adds the count of its whole subtree, so an error deep in the tree counts once at each failing
/// ancestor. That weighting is deliberate: combinations are compared by these sums.

#include "libInventory/engine/SecondPass.h"

#include <algorithm>

#include "libCommon/Assertion.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/PartAssociation.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/MatchCache.h"
#include "libInventory/support/UniqueTexts.h"

namespace vrx {

using vocabulary::ElementKind;

bool SecondPass::run(XmlElement* element, bool underNot) {
    if (element == nullptr) {
        return true;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runSecondPass() - " << placeOf(element) << element->Name());
    bool satisfied = true;
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Part: satisfied = ofPart(element, underNot); break;
        case ElementKind::And:
            satisfied = ofAll(element, underNot);
            if (!satisfied) {
                m_filing.fileUnsatisfied(element, m_slot);
            }
            break;
        case ElementKind::InventoryCheck: satisfied = ofAll(element, underNot); break;
        case ElementKind::Or:
            if (skipsPrunedOr(element)) {
                return false;
            }
            if (element->FirstChildElement() == nullptr) {
                m_state.contextOf(element).m_atLastChild = true;
                return true;
            }
            satisfied = ofOr(element, underNot);
            break;
        case ElementKind::Not: satisfied = ofNot(element); break;
        case ElementKind::Device: satisfied = ofDevice(element, underNot); break;
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"runSecondPass() - " << placeOf(element) << element->Name() << u" status = " << satisfied);
    if (satisfied) {
        m_filing.clear(element, m_slot);
    } else {
        m_filing.count(element, m_slot, m_errors);
    }
    return satisfied;
}

bool SecondPass::ofAll(XmlElement* element, bool underNot) {
    bool all = true;
    for (XmlElement* const child : childElements(element)) {
        all = run(child, underNot) && all;
    }
    return all;
}

bool SecondPass::ofPart(XmlElement* element, bool underNot) {
    const bool satisfied = ofAll(element, underNot);
    if (!satisfied) {
        m_filing.fileUnsatisfied(element, m_slot);
    }
    if (m_state.m_deviceToPartsTable == nullptr) {
        return satisfied;
    }
    if (satisfied) {
        enterPart(element, underNot);
        return true;
    }
    for (XmlElement* const child : childElements(element)) {
        PartAssociation(m_state).remove(child);
    }
    return false;
}

/// Enters the part once under each of its devices, never twice under one device for the same name.
void SecondPass::enterPart(XmlElement* part, bool underNot) {
    Inventory::PartSpec spec(part->Attribute(vocabulary::NAME), part->Attribute(vocabulary::ID),
                             part->Attribute(vocabulary::DESCRIPTION), placeOf(part), String::EMPTY);
    UniqueTexts deviceGuids;
    for (XmlElement* const child : childElements(part)) {
        PartAssociation(m_state).collect(child, underNot, deviceGuids);
    }
    spec.devices = deviceGuids.texts();
    Inventory::DeviceToPartsTable& table = *m_state.m_deviceToPartsTable;
    ListedParts* const index = m_state.m_matchCache != nullptr ? m_state.m_matchCache->listedIn(table) : nullptr;
    for (const String& guid : spec.devices) {
        Array<Inventory::PartSpec>& parts = table[guid];
        const bool isListed = index != nullptr ? !index->add(guid, spec.name)
                                               : std::find(parts.begin(), parts.end(), spec) != parts.end();
        if (!isListed) {
            parts.append(spec);
        }
    }
}

/// An `or` that cannot be met is looked into once, so that the best of its alternatives shows its errors; after that it
/// only gets an error of its own.
bool SecondPass::skipsPrunedOr(XmlElement* element) {
    ElementContext* const context = InventoryState::existingContext(element);
    VRX_ASSERT(context);
    if (!context->m_pruned) {
        return false;
    }
    if (!context->m_visited) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"runSecondPass() - " << placeOf(element) << u" pruned, setting as visited");
        context->m_visited = true;
        return false;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runSecondPass() - " << placeOf(element) << u" pruned, skipping");
    m_filing.fileUnsatisfied(element, m_slot);
    m_filing.count(element, m_slot, m_errors);
    return true;
}

bool SecondPass::ofOr(XmlElement* element, bool underNot) {
    const ElementContext& context = *InventoryState::existingContext(element);
    const bool satisfied = run(context.m_alternatives->at(context.m_selectedChild), underNot);
    if (!satisfied) {
        m_filing.fileUnsatisfied(element, m_slot);
    }
    return satisfied;
}

bool SecondPass::ofNot(XmlElement* element) {
    const bool all = ofAll(element, true);
    const bool satisfied = element->FirstChildElement() == nullptr || !all;
    if (!satisfied) {
        m_filing.fileUnsatisfied(element, m_slot);
    }
    return satisfied;
}

/// Contract: an absent device that a `not` forbids is listed as unsatisfied although the `not` is satisfied.
bool SecondPass::ofDevice(XmlElement* element, bool underNot) {
    const Inventory::InventoryDeviceAssociations& associations = m_state.m_associations;
    const bool satisfied = associations.isSatisfied(element);
    if (satisfied || (underNot && associations.hasEverMatched(element))) {
        return true;
    }
    if (m_state.keepsFindings()) {
        m_state.m_unsatisfiedDevices.append(Inventory::DeviceSpec(
            element->NormalizedAttributeValue(vocabulary::NAME), element->NormalizedAttributeValue(vocabulary::TYPE),
            element->NormalizedAttributeValue(vocabulary::HW_LOCATOR),
            element->NormalizedAttributeValue(vocabulary::OS_LOCATOR)));
    }
    m_filing.fileUnsatisfied(element, m_slot);
    return false;
}

}  // namespace vrx
