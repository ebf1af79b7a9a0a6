#pragma once

#include <vector>

#include "libDiagnosis/Fault.h"
#include "libDiagnosis/WantedDevices.h"
#include "libDiagnosis/certainty/Doubt.h"
#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// What is wrong with a machine, one entry a thing.
///
///     const bool passed = inventory.run();
///     for (const Fault& fault : diagnose(inventory, machine, certaintyOf(inventory, machine, nullptr, passed))) {
///         fetch(fault.asked, fault.place);
///     }
///
/// First what says that it is another machine, then parts as somebody works through a machine, then what sums up parts.
/// The list is empty for a check that passed for sure.
///
/// Requires: the inventory has run on that machine.
std::vector<Fault> diagnose(const Inventory& inventory, const StateManager& machine, const Certainty& certainty);

/// The same, for one of many machines that are checked against copies of one script.
std::vector<Fault> diagnose(const Inventory& inventory, const StateManager& machine, const Certainty& certainty,
                            WantedDevices& asked);

}  // namespace vrx
