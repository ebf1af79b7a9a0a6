/// Whether one candidate device satisfies the content of a `device` element: `property` tests combined by `and`, `or`
/// and `not`.
///
/// A failed test leaves a finding on its `property` element. Failures that were to be expected (a failed alternative of
/// a satisfied `or`, the content of a satisfied `not`) must not be reported, so the visibility of the whole subtree is
/// flipped there. It is flipped and not cleared: a failed alternative inside a satisfied `not` is flipped twice and
/// shows again.

#include "libInventory/engine/matching/PropertyMatcher.h"

#include <optional>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/ScriptNotices.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/findings/ErrorGathering.h"
#include "libInventory/engine/matching/CandidateTrial.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/matching/PropertyTest.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

using vocabulary::ElementKind;

bool PropertyMatcher::matches(XmlElement* element, bool underNot) {
    if (element == nullptr) {
        return false;
    }
    bool status = true;
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Property: status = matchesProperty(element); break;
        case ElementKind::And: status = matchesAll(element, underNot); break;
        case ElementKind::Or: status = matchesAny(element, underNot); break;
        case ElementKind::Not: status = matchesNot(element, underNot); break;
        default:
            if (tellsMistakes()) {
                ScriptNotices(m_state).unknownElement(*element);
            }
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchDeviceRecursive() - " << placeOf(element) << element->Name() << u" status = " << status);
    return status;
}

bool PropertyMatcher::matchesAny(XmlElement* element, bool underNot) {
    for (XmlElement* const child : childElements(element)) {
        if (!matches(child, underNot)) {
            continue;
        }
        for (XmlElement* const failed : childElements(element)) {
            if (failed == child) {
                break;
            }
            ErrorFiling(m_state).flipErrorsVisible(failed, 1);
        }
        return true;
    }
    return false;
}

bool PropertyMatcher::matchesAll(XmlElement* element, bool underNot) {
    bool all = true;
    for (XmlElement* const child : childElements(element)) {
        all = matches(child, underNot) && all;
    }
    return all;
}

bool PropertyMatcher::matchesNot(XmlElement* element, bool underNot) {
    if (underNot && tellsMistakes()) {
        ScriptNotices(m_state).notUnderNot(*element);
    }
    const bool holds = !matchesAll(element, true);
    if (holds) {
        ErrorFiling(m_state).flipErrorsVisible(element, 1);
    }
    return holds;
}

bool PropertyMatcher::matchesProperty(XmlElement* element) {
    if (!m_device) {
        if (tellsMistakes()) {
            ErrorFiling(m_state).file(element, FindingKind::PropertyOutsideDevice, slot::MATCHING);
        }
        return false;
    }
    std::optional<PropertyExpectation> ownExpectation;
    const PropertyExpectation& expectation =
        m_trial != nullptr ? m_trial->expectationOf(*element) : ownExpectation.emplace(*element);
    if (const std::optional<bool> known = matchesRecord(expectation)) {
        if (!*known) {
            fileFailure(element, FindingKind::PropertyMismatch, expectation);
        }
        return *known;
    }
    const IPropertyImp* const property = m_device->findProperty(expectation.key());
    if (property == nullptr) {
        fileFailure(element, FindingKind::PropertyMissing, expectation);
        return false;
    }
    if (expectation.asksForPresenceOnly()) {
        return true;
    }
    const bool matched = meetsAloud(*property, expectation);
    if (!matched) {
        fileFailure(element, FindingKind::PropertyMismatch, expectation);
    } else if (m_state.m_tipMatchedProperties) {
        tellMatch(element, *property, expectation);
    }
    return matched;
}

/// The answer where the recording gives it, so that no property needs to be made and nobody is told of it. The record
/// goes as soon as properties are made, which a question that it could not answer does.
std::optional<bool> PropertyMatcher::matchesRecord(const PropertyExpectation& expectation) {
    if (m_device->recordedProperties() == nullptr || m_state.m_tipMatchedProperties ||
        inventoryLog().isEnabled(LogPriority::Debug)) {
        return std::nullopt;
    }
    const std::optional<StringView> text = m_texts.find(expectation.key());
    return text ? std::optional(meets(*text, expectation)) : std::nullopt;
}

void PropertyMatcher::fileFailure(XmlElement* element, FindingKind kind, const PropertyExpectation& expectation) {
    m_hasFiled = true;
    if (m_trial != nullptr) {
        ErrorFiling(m_state).fileFailure(element, kind, m_candidate, m_trial->candidates(), expectation);
    } else {
        ErrorFiling(m_state).fileFailure(element, kind, m_device, m_candidate, expectation);
    }
}

// What is told is gathered at once, which takes the element's context away: later gathering passes the element by.
void PropertyMatcher::tellMatch(XmlElement* element, const IPropertyImp& property,
                                const PropertyExpectation& expectation) {
    ErrorFiling(m_state).fileMatch(element, m_device, property.value().toString(true), expectation);
    ErrorGathering(m_state).gatherAndClean(element, slot::MATCHING);
}

}  // namespace vrx
