#pragma once

#include <vector>

#include "libDiagnosis/Fault.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// Folds faults that follow from another: what stands below a missing device cannot be there either, and what an extra
/// device is made of comes with it. They become `withIt` of that fault.
void foldBelow(std::vector<Fault>& faults, const StateManager& machine);

}  // namespace vrx
