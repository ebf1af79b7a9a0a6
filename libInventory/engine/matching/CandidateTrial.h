#pragma once

#include "libInventory/engine/matching/CandidateList.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/support/SharedLists.h"

namespace vrx {

/// What the candidates of one element share while one after the other is tried.
class CandidateTrial {
public:
    CandidateTrial(const CandidateList& candidates, SharedLists& lists) noexcept
        : m_candidates(candidates), m_lists(lists) {}

    const PropertyExpectation& expectationOf(const XmlElement& property) { return m_expectations.of(property); }

    /// All candidates, for findings about them.
    const SharedLists::Pointer& candidates() {
        if (m_shared == nullptr) {
            m_shared = m_lists.share(m_candidates.devices());
        }
        return m_shared;
    }

private:
    const CandidateList& m_candidates;
    SharedLists& m_lists;
    KnownExpectations m_expectations;
    SharedLists::Pointer m_shared;
};

}  // namespace vrx
