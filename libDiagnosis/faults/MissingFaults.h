#pragma once

#include <vector>

#include "libDiagnosis/Fault.h"
#include "libDiagnosis/WantedDevices.h"
#include "libDiagnosis/certainty/Doubt.h"
#include "libDiagnosis/faults/FreeDevices.h"

namespace vrx {

/// What is wrong with the elements that have no device, in the order of the script; those that nobody can tell about
/// are left out. Devices that became of missing ones are taken. A fault that ends up at a device tells all about it, so
/// two devices that exchanged their places are in one.
std::vector<Fault> missingFaults(const Inventory& inventory, const StateManager& machine, const Certainty& certainty,
                                 FreeDevices& free, WantedDevices& asked);

}  // namespace vrx
