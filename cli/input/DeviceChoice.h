#pragma once

#include <string>
#include <vector>

#include "libSystemState/Forward.h"
#include "libSystemState/StateManager.h"

namespace vrx::cli {

/// Which devices somebody wants to see. Both conditions have to hold.
struct DeviceChoice {
    std::string type;    ///< a device type or an alias; empty for every type
    std::string device;  ///< a guid, a locator or a name; empty for every device

    bool isEverything() const noexcept { return type.empty() && device.empty(); }
};

/// Why that is no device type, with the name that may have been meant; empty when it is one.
std::string typeProblem(const std::string& type);

/// The devices of the store that the choice fits, in the store's order. A text may fit several devices: a name, or a
/// locator that devices share.
std::vector<const IDeviceImp*> chosenDevices(const StateManager& store, const DeviceChoice& choice);

/// The line for a `device` that no device of the machine answers to: what it has that looks like it.
std::string noSuchDevice(const std::string& device, const std::string& machine, const StateManager& store);

}  // namespace vrx::cli
