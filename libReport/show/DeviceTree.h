#pragma once

#include <cstddef>
#include <vector>

#include "libSystemState/Forward.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// A device of a machine and those that are shown below it.
struct DeviceTreeNode {
    const IDeviceImp* device = nullptr;  ///< null in the node above all others
    std::vector<DeviceTreeNode> children;
};

/// The devices as a tree, below a node without a device. `devices` is some or all of the store's, in the store's
/// order; a device whose parent is not among them stands below the nearest ancestor that is.
DeviceTreeNode deviceTree(const StateManager& store, const std::vector<const IDeviceImp*>& devices);

}  // namespace vrx
