/// The odometer of alternatives, and the numbering that the error measure uses.
///
/// Each `or` is a digit, its alternatives the digit's values; digits stand in document order and the first turns
/// fastest. One walk sets the digits for the next combination and appends the association sets of the chosen
/// alternatives to the working graph. An `or` inside an alternative takes part only while that alternative is chosen.
/// Alternatives that the first pass pruned are stepped over when there is a later one to go to.

#include "libCommon/Assertion.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

using vocabulary::ElementKind;

void Inventory::mergeSubTrees(XmlElement* element, InventoryDeviceAssociations& target, bool& more, bool& increment) {
    if (element == nullptr) {
        increment = false;
        more = false;
        return;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"mergeSubTrees() - " << locationOf(element) << element->Name());
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Not:
            for (XmlElement* const child : childElements(element)) {
                mergeSubTrees(child, target, more, increment);
            }
            break;
        case ElementKind::Or: mergeAlternative(element, target, more, increment); break;
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"mergeSubTrees() - " << locationOf(element) << element->Name());
}

namespace {

/// Steps the digit: to the next value, consuming the increment, or from the last back to the first, carrying it on.
void stepDigit(ElementContext& context, bool& increment) {
    if (!context.m_atLastChild) {
        ++context.m_selectedChild;
        increment = false;
    } else {
        context.m_selectedChild = 0;
        context.m_atLastChild = false;
    }
}

XmlElement* childAt(XmlElement* first, std::uint32_t position) {
    XmlElement* child = first;
    for (std::uint32_t i = 0; i < position; ++i) {
        XmlElement* const next = child->NextSiblingElement();
        if (next == nullptr) {
            break;
        }
        child = next;
    }
    return child;
}

bool isPruned(const XmlElement* alternative) {
    const auto* const context = static_cast<const ElementContext*>(alternative->GetUserData());
    VRX_ASSERT_TEXT(context, "childContext");
    return context->m_pruned;
}

/// The alternative to take from `start` on: the next that is not pruned, or `start` itself when there is none.
XmlElement* skipPruned(XmlElement* start, std::uint32_t& selectedChild) {
    const std::uint32_t remembered = selectedChild;
    XmlElement* child = start;
    while (isPruned(child)) {
        XmlElement* const next = child->NextSiblingElement();
        if (next == nullptr) {
            selectedChild = remembered;
            return start;
        }
        child = next;
        ++selectedChild;
    }
    return child;
}

}  // namespace

void Inventory::mergeAlternative(XmlElement* element, InventoryDeviceAssociations& target, bool& more,
                                 bool& increment) {
    ElementContext* const context = State::existingContext(element);
    VRX_ASSERT(context);
    if (increment) {
        stepDigit(*context, increment);
    }
    XmlElement* const first = element->FirstChildElement();
    if (first == nullptr) {
        context->m_atLastChild = true;
        return;
    }
    XmlElement* const chosen = skipPruned(childAt(first, context->m_selectedChild), context->m_selectedChild);
    const ElementContext* const childContext = State::existingContext(chosen);
    VRX_ASSERT(childContext);
    VRX_ASSERT(childContext->m_associationIndex > 0);
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"mergeSubTrees() - " << locationOf(element) << u" index = " << context->m_selectedChild
                                  << u" appending associations[" << childContext->m_associationIndex << u"]");
    target.append(m_state->m_associationSets[static_cast<std::size_t>(childContext->m_associationIndex)]);
    mergeSubTrees(chosen, target, more, increment);
    if (chosen->NextSiblingElement() == nullptr) {
        context->m_atLastChild = true;
    } else {
        more = true;
    }
}

void Inventory::assignIndices(XmlElement* element, StringView parentName, unsigned index) {
    if (element == nullptr) {
        return;
    }
    // Most elements are properties of devices, so the parent is looked at first.
    if (parentName.size() == vocabulary::AND.size() && vocabulary::kindOf(parentName) == ElementKind::And) {
        const ElementKind kind = vocabulary::kindOf(*element);
        if (kind != ElementKind::And && kind != ElementKind::Or && kind != ElementKind::Not) {
            m_state->contextOf(element).m_andIndex = index;
        }
    }
    unsigned position = 0;
    for (XmlElement* const child : childElements(element)) {
        assignIndices(child, element->Name(), ++position);
    }
}

}  // namespace vrx
