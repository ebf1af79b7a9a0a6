#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <utility>
#include <vector>

#include "libCommon/Forward.h"
#include "libInventory/Finding.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

/// What a run puts down beside its error slots, for those who ask afterwards what it found. Nothing here grows with the
/// candidates of a run that passes.
struct RunRecord {
    /// What became `error` children of one element at one gathering.
    struct Written {
        XmlElement* element;
        unsigned slot;
        std::uint32_t entries;  ///< of the slot's findings
        bool isUnsatisfied;     ///< the element itself as well
    };

    struct Notice {
        FindingKind kind;
        const XmlElement* element;
    };

    struct Choice {
        const XmlElement* orElement;
        std::uint32_t selectedChild;
        bool isPruned;
    };

    /// A candidate that failed without any finding: everything that a `not` forbids is in it.
    struct SilentCandidate {
        boost::shared_ptr<IDeviceImp> device;
        std::uint32_t candidate;
    };

    using Links = std::vector<std::pair<const XmlElement*, const IDeviceImp*>>;

    RunSummary summary;

    /// Tests that were given up only because the log wanted to know of them.
    std::uint64_t givenUpInTraces = 0;

    std::vector<Written> written;
    std::vector<Notice> notices;
    boost::unordered_flat_map<const XmlElement*, unsigned> alternatives;  ///< and the association set of each
    std::vector<XmlElement*> orElements;                                  ///< in document order
    boost::unordered_flat_map<const XmlElement*, std::vector<SilentCandidate>> silentCandidates;

    /// Whether some combination did not pass that might when devices are assigned exactly.
    bool couldGainByExactness = false;

    /// Of the combination under evaluation: whether it is assigned otherwise than greedily, and the elements that only
    /// have a device because of that.
    bool isAssignedExactly = false;
    std::vector<const XmlElement*> exactlyAssigned;

    /// Of the combination that the findings speak of; none before a run has ended as runs do.
    bool hasKeptCombination = false;
    bool hasPassed = false;
    std::vector<Choice> keptChoices;

    /// The links of that combination; while they have not been kept, they are those of the working graph.
    bool areLinksKept = false;
    Links keptLinks;
};

}  // namespace vrx
