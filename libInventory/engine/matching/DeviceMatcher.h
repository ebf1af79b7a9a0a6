#pragma once

#include "libCommon/Forward.h"
#include "libCommon/containers/Array.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/engine/matching/CandidateSearch.h"

namespace vrx {

struct InventoryState;

/// Matches `device` elements against the store.
class DeviceMatcher {
public:
    explicit DeviceMatcher(InventoryState& state) noexcept : m_state(state), m_filing(state) {}

    /// Links the element with every device that satisfies it, in the association set of that index. Whether there is
    /// one. A null element has none.
    bool match(XmlElement* element, bool underNot, unsigned associationIndex);

private:
    using DeviceArray = CandidateSearch::DeviceArray;

    bool matchThroughCache(XmlElement* element, bool underNot);
    void logMatch(XmlElement* element, bool underNot);
    bool matchInStore(XmlElement* element, bool underNot, unsigned associationIndex);
    bool matchCandidates(XmlElement* element, const DeviceArray& candidates, bool underNot, unsigned associationIndex);
    bool tryCandidate(XmlElement* element, const boost::shared_ptr<IDeviceImp>& device, std::uint32_t candidate,
                      bool underNot, unsigned associationIndex);
    bool matchCandidate(XmlElement* element, const boost::shared_ptr<IDeviceImp>& device, std::uint32_t candidate,
                        bool underNot);

    InventoryState& m_state;
    ErrorFiling m_filing;
};

}  // namespace vrx
