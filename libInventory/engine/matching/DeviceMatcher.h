#pragma once

#include <memory>

#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/matching/CandidateSearch.h"
#include "libInventory/engine/matching/MatchesAhead.h"
#include "libInventory/engine/matching/WideMatches.h"
#include "libInventory/engine/sweep/CandidatePool.h"

namespace vrx {

class CandidateTrial;
struct InventoryState;

/// Matches `device` elements against the store.
class DeviceMatcher {
public:
    explicit DeviceMatcher(InventoryState& state);

    /// Looks ahead at all elements below the root on as many threads as the run may use, so that `match` has less to
    /// do.
    void lookAhead(const XmlElement& root);

    /// Links the element with every device that satisfies it, in the association set of that index. Whether there is
    /// one. A null element has none.
    bool match(XmlElement* element, bool underNot, unsigned associationIndex);

private:
    using DeviceArray = CandidateSearch::DeviceArray;

    bool matchThroughCache(XmlElement* element, bool underNot);
    void logMatch(XmlElement* element, bool underNot, unsigned associationIndex);
    bool matchAlike(XmlElement* element, bool underNot, unsigned associationIndex);
    bool matchInStore(XmlElement* element, bool underNot, unsigned associationIndex);
    bool matchFiltered(XmlElement* element, bool underNot, unsigned associationIndex);
    bool mayPool() const;
    bool matchCandidates(XmlElement* element, const DeviceArray& candidates, bool underNot, unsigned associationIndex);
    bool matchPool(XmlElement* element, CandidatePool& pool, bool underNot, unsigned associationIndex);
    bool linkAll(XmlElement* element, DeviceArray matched, unsigned associationIndex);
    bool matchOne(XmlElement* element, const DeviceArray& candidates, bool underNot, unsigned associationIndex);
    bool matchCandidate(XmlElement* element, const boost::shared_ptr<IDeviceImp>& device, std::uint32_t candidate,
                        bool underNot, CandidateTrial* trial);

    InventoryState& m_state;
    ErrorFiling m_filing;
    SharedLists m_sharedLists;
    WideMatches m_wideMatches;
    std::shared_ptr<CandidatePools> m_pools;
    MatchesAhead m_ahead;
    std::size_t m_tellingsAhead = 0;   ///< when it was looked ahead
    SharedLists::Pointer m_wideMatch;  ///< of the element that was matched last, when it had many candidates
    bool m_hasFailed = false;          ///< some candidate of that element failed a test
};

}  // namespace vrx
