/// Matching device by device asks each test of a content once for each candidate; here each test is asked once for a
/// set of candidates, and the sets are joined as `and`, `or` and `not` join single answers. What one candidate fails is
/// filed as it would be by itself: the findings of a test are in the order of the candidates in both ways, and the
/// visibility of errors is flipped as often as there are candidates that flip it.

#include "libInventory/engine/sweep/ContentSweep.h"

#include <algorithm>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/sweep/CandidatePool.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

bool holdsOnlyTests(const XmlElement& element, bool underNot, CandidatePool& pool) {
    for (const XmlElement* const child : childElements(element)) {
        const ElementKind kind = vocabulary::kindOf(*child);
        const bool isNot = kind == ElementKind::Not;
        if (kind == ElementKind::Property) {
            if (pool.column(child->Attribute(vocabulary::KEY)) == nullptr) {
                return false;
            }
        } else if ((kind != ElementKind::And && kind != ElementKind::Or && !isNot) || (isNot && underNot) ||
                   !holdsOnlyTests(*child, underNot || isNot, pool)) {
            return false;
        }
    }
    return true;
}

}  // namespace

ContentSweep::ContentSweep(InventoryState& state, CandidatePool& pool) : m_state(state), m_pool(pool) {}

bool ContentSweep::isPossible(const XmlElement& device, bool underNot) {
    for (const XmlElement* const child : childElements(device)) {
        m_isFlat = m_isFlat && vocabulary::kindOf(*child) == ElementKind::Property;
    }
    return holdsOnlyTests(device, underNot, m_pool);
}

CandidateRanges ContentSweep::silent(const CandidateRanges& candidates) const {
    return m_isFlat ? CandidateRanges() : candidates - m_failed;
}

CandidateRanges ContentSweep::match(XmlElement* device) {
    return matchingAll(device, CandidateRanges(static_cast<std::uint32_t>(m_pool.devices()->size())));
}

CandidateRanges ContentSweep::matching(XmlElement* element, const CandidateRanges& tried) {
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::Property: return matchingProperty(element, tried);
        case ElementKind::And: return matchingAll(element, tried);
        case ElementKind::Or: return matchingAny(element, tried);
        default: break;
    }
    CandidateRanges outside = tried - matchingAll(element, tried);
    ErrorFiling(m_state).flipErrorsVisible(element, outside.count());
    return outside;
}

CandidateRanges ContentSweep::matchingAll(XmlElement* element, const CandidateRanges& tried) {
    CandidateRanges all = tried;
    for (XmlElement* const child : childElements(element)) {
        all = all & matching(child, tried);
    }
    return all;
}

/// A candidate is tried with the alternatives up to the first that it satisfies; the failures before are not shown.
CandidateRanges ContentSweep::matchingAny(XmlElement* element, const CandidateRanges& tried) {
    CandidateRanges left = tried;
    for (XmlElement* const child : childElements(element)) {
        const CandidateRanges matched = matching(child, left);
        for (XmlElement* const failed : childElements(element)) {
            if (failed == child) {
                break;
            }
            ErrorFiling(m_state).flipErrorsVisible(failed, matched.count());
        }
        left = left - matched;
        if (left.isEmpty()) {
            break;
        }
    }
    return tried - left;
}

CandidateRanges ContentSweep::matchingProperty(XmlElement* element, const CandidateRanges& tried) {
    const PropertyExpectation expectation(*element);
    CandidateColumn& column = *m_pool.column(expectation.key());
    CandidateRanges met = tried & column.meeting(expectation);
    const CandidateRanges failed = tried - met;
    if (!failed.isEmpty()) {
        ErrorFiling(m_state).fileFailures(element, failed, failed & column.missing(), m_pool.devices(), expectation);
        m_hasFiled = true;
        m_failed = m_isFlat ? CandidateRanges() : m_failed | failed;
    }
    return met;
}

}  // namespace vrx
