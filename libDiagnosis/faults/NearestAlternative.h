#pragma once

#include <vector>

#include "libDiagnosis/faults/FreeDevices.h"
#include "libDiagnosis/faults/MissingElement.h"

namespace vrx {

/// The elements that have no device, in the order of the script. Of an `or` none of whose alternatives is met, those of
/// the alternative that comes nearest to the machine, which need not be the one that the run speaks of: the one of
/// whose devices the largest part is there, and of those the one that fails the fewest tests. Devices that other
/// alternatives have are free for it, and those that it has are taken.
///
/// Requires: the inventory has run.
std::vector<MissingElement> elementsWithoutDevice(const Inventory& inventory, FreeDevices& free, WantedDevices& asked);

}  // namespace vrx
