#pragma once

#include <vector>

#include "libSystemState/Forward.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// The same device in two recordings; null on the side where it is not.
struct DevicePair {
    const IDeviceImp* before = nullptr;
    const IDeviceImp* after = nullptr;
};

/// Finds every device of one machine in the other. Each device of either is in exactly one pair: those of `after` in
/// its order, then those that only `before` has, in its order.
///
///     for (const auto& [before, after] : pairDevices(yesterday, today)) {
///         ...  // null where the device is not
///     }
std::vector<DevicePair> pairDevices(const StateManager& before, const StateManager& after);

}  // namespace vrx
