#pragma once

#include <cstddef>
#include <vector>

#include "libSystemState/Forward.h"

namespace vrx {

/// A device, and the place of its machine among those that were given.
struct GroupMember {
    std::size_t machine;
    const IDeviceImp* device;
};

/// Devices of different machines, in the order of these.
using DeviceGroup = std::vector<GroupMember>;

/// Finds out which device of one machine is which of the others. Every device is in exactly one group, and all devices
/// of a group are of one type. Groups come in the order of the first machine, then what only the second has, and so on.
std::vector<DeviceGroup> groupDevices(const std::vector<std::vector<const IDeviceImp*>>& devices);

}  // namespace vrx
