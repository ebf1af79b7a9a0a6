#pragma once

#include "libCommon/text/String.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// What people call a machine by. Texts are empty where nothing says them.
struct MachineIdentity {
    String manufacturer;
    String model;
    String serialNumber;
    String hostName;
};

/// Of the first system that the machine holds; of a machine that names none, its first main board.
MachineIdentity machineIdentity(const StateManager& machine);

}  // namespace vrx
