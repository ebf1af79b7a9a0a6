#pragma once

#include <vector>

#include "libDiagnosis/faults/FreeDevices.h"
#include "libDiagnosis/faults/MissingElement.h"

namespace vrx {

/// Gives elements their devices by what identifies these: serial numbers and addresses that no other device of the type
/// has and no other element asks for. The device may stand at any place, and may differ besides.
void pairByIdentity(std::vector<MissingElement>& missing, const StateManager& machine, FreeDevices& free);

/// Gives elements that name a place, and ask for no identity, devices that are all that they ask for and stand at
/// another place, where that is sure:
///
/// - two devices stand at each other's places, and neither is what is asked for at its own;
/// - nothing of the type stands at the place, and the only device that would do is one too many.
void pairByContent(std::vector<MissingElement>& missing, const Inventory& inventory, const StateManager& machine,
                   FreeDevices& free, WantedDevices& asked);

}  // namespace vrx
