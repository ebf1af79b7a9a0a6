#pragma once

#include <cstddef>
#include <vector>

#include "libDiagnosis/Fault.h"
#include "libDiagnosis/waivers/Waiver.h"

namespace vrx {

/// A fault that does not count, and why.
struct WaivedFault {
    Fault fault;
    std::vector<Waiver> waivers;  ///< that cover it: one, or several that cover what differs between them
};

/// What is left of the faults of a check.
struct WaivedFaults {
    std::vector<Fault> left;
    std::vector<WaivedFault> waived;
    std::vector<Waiver> expired;  ///< would cover a fault that is left
    std::vector<Waiver> idle;     ///< cover nothing; a fault may have been mended, or the waiver is mistaken
};

/// Parts the faults. A fault that differs in several properties is waived when each of them is.
///
///     WaivedFaults outcome = applyWaivers(diagnose(...), waivers, DateTime::getCurrentDateTime());
///     const bool isFine = outcome.left.empty();
WaivedFaults applyWaivers(std::vector<Fault> faults, const std::vector<Waiver>& waivers, const DateTime& now);

}  // namespace vrx
