/// Whether one candidate device satisfies the content of a `device` element: `property` tests combined by `and`, `or`
/// and `not`.
///
/// A failed test leaves a finding on its `property` element. Failures that were to be expected (a failed alternative of
/// a satisfied `or`, the content of a satisfied `not`) must not be reported, so the visibility of the whole subtree is
/// flipped there. It is flipped and not cleared: a failed alternative inside a satisfied `not` is flipped twice and
/// shows again.

#include "libInventory/engine/matching/PropertyMatcher.h"

#include <algorithm>
#include <vector>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/ScriptNotices.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/findings/ErrorGathering.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/devices/IDeviceImp.h"
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
            flipErrorsVisible(failed);
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
        flipErrorsVisible(element);
    }
    return holds;
}

void PropertyMatcher::flipErrorsVisible(XmlElement* element) {
    ElementContext& context = m_state.contextOf(element);
    context.m_errorsVisible = !context.m_errorsVisible;
    for (XmlElement* const child : childElements(element)) {
        flipErrorsVisible(child);
    }
}

namespace {

bool matchesPattern(const IPropertyImp& property, StringView expected) {
    String made;
    const String* actual = property.value().text();
    if (actual == nullptr) {
        made = property.value().toString(true);
        actual = &made;
    }
    const bool matched = Inventory::matchString(expected, *actual);
    if (!matched) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchProperty() key = " << property.key() << u" not matched value = " << *actual << u" inventory = "
                                          << expected);
    }
    return matched;
}

/// The device's values of which each may satisfy one expected entry. Entries that were taken are marked; those at the
/// front are passed over for good, so that equal lists in equal order are matched in linear time.
class RemainingValues {
public:
    explicit RemainingValues(const ValueImp& value) : m_texts(value.toStringArray(false)) {
        m_taken.assign(m_texts.size(), false);
    }

    /// Takes the first remaining value that the pattern accepts; false when there is none.
    bool takeFirstMatch(StringView pattern) {
        for (std::size_t i = m_first; i < m_texts.size(); ++i) {
            if (!m_taken[i] && Inventory::matchString(pattern, m_texts[i])) {
                m_taken[i] = true;
                while (m_first < m_taken.size() && m_taken[m_first]) {
                    ++m_first;
                }
                return true;
            }
        }
        return false;
    }

private:
    Array<String> m_texts;
    std::vector<bool> m_taken;
    std::size_t m_first = 0;
};

/// Whether each expected entry finds a value of its own. Requires: there are as many of one as of the other.
bool takesAll(const ValueImp& value, const Array<StringView>& expected) {
    if (const String* const onlyText = value.text()) {
        return Inventory::matchString(expected[0], *onlyText);
    }
    // Contract: greedy in the order of the expected entries, without backtracking.
    RemainingValues remaining(value);
    return std::all_of(expected.begin(), expected.end(),
                       [&remaining](StringView entry) { return remaining.takeFirstMatch(entry); });
}

bool matchesEntries(const IPropertyImp& property, const Array<StringView>& expected) {
    const std::size_t values = property.value().arraySize();
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchProperty(arr) key = " << property.key() << u" syssize = " << values << u" invsize = "
                                         << expected.size());
    if (values != expected.size()) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"matchProperty(arr) size mismatch key = " << property.key());
        return false;
    }
    const bool matched = takesAll(property.value(), expected);
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            (matched ? u"matchProperty(arr) matched key = " : u"matchProperty(arr) no matching value for key = ")
                << property.key());
    return matched;
}

}  // namespace

bool PropertyMatcher::matchesProperty(XmlElement* element) {
    if (!m_device) {
        if (tellsMistakes()) {
            ErrorFiling(m_state).file(element, FindingKind::PropertyOutsideDevice, slot::MATCHING);
        }
        return false;
    }
    const PropertyExpectation expectation(*element);
    const IPropertyImp* const property = m_device->findProperty(expectation.key());
    if (property == nullptr) {
        m_hasFiled = true;
        ErrorFiling(m_state).fileFailure(element, FindingKind::PropertyMissing, m_device, m_candidate, expectation);
        return false;
    }
    if (expectation.asksForPresenceOnly()) {
        return true;
    }
    const bool matched = expectation.entries().isEmpty() ? matchesPattern(*property, expectation.value())
                                                         : matchesEntries(*property, expectation.entries());
    if (!matched) {
        m_hasFiled = true;
        ErrorFiling(m_state).fileFailure(element, FindingKind::PropertyMismatch, m_device, m_candidate, expectation);
    } else if (m_state.m_tipMatchedProperties) {
        tellMatch(element, *property, expectation);
    }
    return matched;
}

// What is told is gathered at once, which takes the element's context away: later gathering passes the element by.
void PropertyMatcher::tellMatch(XmlElement* element, const IPropertyImp& property,
                                const PropertyExpectation& expectation) {
    ErrorFiling(m_state).fileMatch(element, m_device, property.value().toString(true), expectation);
    ErrorGathering(m_state).gatherAndClean(element, slot::MATCHING);
}

}  // namespace vrx
