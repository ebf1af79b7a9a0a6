/// The odometer of alternatives, and the numbering that the error measure uses.
///
/// Each `or` is a digit, its alternatives the digit's values; digits stand in document order and the first turns
/// fastest. One walk sets the digits for the next combination and appends the association sets of the chosen
/// alternatives to the working graph. An `or` inside an alternative takes part only while that alternative is chosen.
/// Alternatives that the first pass pruned are stepped over when there is a later one to go to.

#include "libInventory/engine/AlternativeOdometer.h"

#include "libCommon/Assertion.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

using vocabulary::ElementKind;

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

}  // namespace

void AlternativeOdometer::merge(XmlElement* root, bool step) {
    // Without an `or` there is nothing to merge; the walk only has lines for the log.
    if (!m_state.m_record.orElements.empty() || inventoryLog().isEnabled(LogPriority::Debug)) {
        m_carries = step;
        mergeTree(root);
    }
}

void AlternativeOdometer::mergeTree(XmlElement* element) {
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"mergeSubTrees() - " << placeOf(element) << element->Name());
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Not:
            for (XmlElement* const child : childElements(element)) {
                mergeTree(child);
            }
            break;
        case ElementKind::Or: mergeAlternative(element); break;
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"mergeSubTrees() - " << placeOf(element) << element->Name());
}

void AlternativeOdometer::mergeAlternative(XmlElement* element) {
    ElementContext* const context = InventoryState::existingContext(element);
    VRX_ASSERT(context);
    if (m_carries) {
        stepDigit(*context, m_carries);
    }
    VRX_ASSERT_TEXT(context->m_alternatives, "context->m_alternatives");
    const AlternativeList& alternatives = *context->m_alternatives;
    context->m_selectedChild = alternatives.skipPruned(context->m_selectedChild);
    XmlElement* const chosen = alternatives.at(context->m_selectedChild);
    if (chosen == nullptr) {
        context->m_atLastChild = true;
        return;
    }
    const ElementContext* const childContext = InventoryState::existingContext(chosen);
    VRX_ASSERT(childContext);
    VRX_ASSERT(childContext->m_associationIndex > 0);
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"mergeSubTrees() - " << placeOf(element) << u" index = " << context->m_selectedChild
                                  << u" appending associations[" << childContext->m_associationIndex << u"]");
    m_state.m_associations.append(
        m_state.m_associationSets[static_cast<std::size_t>(childContext->m_associationIndex)]);
    mergeTree(chosen);
    if (chosen->NextSiblingElement() == nullptr) {
        context->m_atLastChild = true;
    }
}

void AlternativeOdometer::assignIndices(XmlElement* root) {
    if (m_state.m_script.MayHaveName(vocabulary::AND)) {
        assignIndices(root, StringView(), 0);
    }
}

/// The element is the `index`th child of one named `parentName`.
void AlternativeOdometer::assignIndices(XmlElement* element, StringView parentName, unsigned index) {
    if (element == nullptr) {
        return;
    }
    // Most elements are properties of devices, so the parent is looked at first.
    if (parentName.size() == vocabulary::AND.size() && vocabulary::kindOf(parentName) == ElementKind::And) {
        const ElementKind kind = vocabulary::kindOf(*element);
        if (kind != ElementKind::And && kind != ElementKind::Or && kind != ElementKind::Not) {
            m_state.contextOf(element).m_andIndex = index;
        }
    }
    unsigned position = 0;
    for (XmlElement* const child : childElements(element)) {
        assignIndices(child, element->Name(), ++position);
    }
}

}  // namespace vrx
