#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libDiagnosis/Fault.h"
#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// One place of a machine: a slot, a bay, a socket, and what is in it.
struct MachinePlace {
    Inventory::DeviceSpec spec;  ///< of the device, or of the one that is missing
    std::string summary;         ///< what matters of the device, in a few words
    std::optional<std::size_t> fault;
    bool isEmpty = false;  ///< a device is missing here
};

/// Places of one sort, in the order in which somebody finds them: `dimm:A2` before `dimm:A10`.
struct PlaceGroup {
    std::string_view title;
    std::vector<MachinePlace> places;
};

/// All devices of the machine, and those that are missing at a known place. Sorts without any are left out.
std::vector<PlaceGroup> machinePlaces(const StateManager& machine, const std::vector<Fault>& faults);

}  // namespace vrx
