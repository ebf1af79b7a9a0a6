#pragma once

#include <cstddef>
#include <vector>

#include "libDiagnosis/FaultKindNames.h"

namespace vrx {

/// How many faults there are of each kind, in the order of `allFaultKinds`.
std::vector<std::size_t> faultCounts(const std::vector<Fault>& faults);

}  // namespace vrx
