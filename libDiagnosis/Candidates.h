#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "libDiagnosis/Difference.h"
#include "libInventory/Finding.h"

namespace vrx {

/// A device that would have done, but serves another element.
struct TakenDevice {
    Inventory::DeviceSpec device;
    ElementPlace holder;
};

/// What became of the devices that were tried for one element.
///
///     const CandidateSummary candidates = summaryOf(inventory.outcomeOf(device));
///     if (candidates.nearest) {
///         show(candidates.nearest->device, candidates.nearest->differences);
///     }
struct CandidateSummary {
    static constexpr std::size_t MOST_TAKEN = 3;

    std::size_t failed = 0;             ///< how many failed a property
    std::optional<NearDevice> nearest;  ///< of those the one that failed the fewest, the first of several
    std::size_t takenCount = 0;
    std::vector<TakenDevice> taken;  ///< the first MOST_TAKEN of them
};

CandidateSummary summaryOf(const DeviceOutcome& outcome);

/// What a failed property is about; nothing for any other finding.
std::optional<Difference> differenceOf(const Finding& finding);

}  // namespace vrx
