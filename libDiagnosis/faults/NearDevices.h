#pragma once

#include <vector>

#include "libDiagnosis/faults/FreeDevices.h"
#include "libDiagnosis/faults/MissingElement.h"

namespace vrx {

/// Gives elements that name a place the device that stands there, though it is not what they ask for: one of the type,
/// or else one of the same kind of type.
void pairAtPlace(std::vector<MissingElement>& missing, const StateManager& machine, FreeDevices& free,
                 Outcomes& outcomes);

/// Gives elements that name no place the devices that come nearest to what they ask for, where there are no more of
/// these than elements.
void pairNearest(std::vector<MissingElement>& missing, FreeDevices& free, Outcomes& outcomes);

/// The candidate that comes nearest, whoever has it; null when none was tried.
const Candidate* nearestCandidate(const DeviceOutcome& outcome);

}  // namespace vrx
