#pragma once

#include "libCommon/Forward.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/sweep/CandidateRanges.h"

namespace vrx {

class CandidatePool;
struct InventoryState;

/// Matches the content of a `device` element against all of its candidates at once, with the outcome of matching it
/// against one after the other.
class ContentSweep {
public:
    ContentSweep(InventoryState& state, CandidatePool& pool);

    /// Whether the content holds nothing but tests, of which none is a mistake in the script that observers are to be
    /// told of, and the pool knows what they ask for.
    bool isPossible(const XmlElement& device, bool underNot);

    /// The candidates that satisfy the content. Requires: isPossible, and no one listens to the single tests.
    CandidateRanges match(XmlElement* device);

    /// Whether some candidate failed a test, also one that satisfies the content.
    bool hasFiled() const noexcept { return m_hasFiled; }

    /// Those of the candidates that failed no test.
    CandidateRanges silent(const CandidateRanges& candidates) const;

private:
    CandidateRanges matching(XmlElement* element, const CandidateRanges& tried);
    CandidateRanges matchingAll(XmlElement* element, const CandidateRanges& tried);
    CandidateRanges matchingAny(XmlElement* element, const CandidateRanges& tried);
    CandidateRanges matchingProperty(XmlElement* element, const CandidateRanges& tried);

    InventoryState& m_state;
    CandidatePool& m_pool;
    bool m_isFlat = true;  ///< properties only: who fails any does not satisfy the content, and the other way round
    bool m_hasFiled = false;
    CandidateRanges m_failed;  ///< some test; not kept for a flat content
};

}  // namespace vrx
