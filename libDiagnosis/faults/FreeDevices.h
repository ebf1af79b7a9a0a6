#pragma once

#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libSystemState/Forward.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// The devices of a machine that no element of the script has, each of which can be given to one.
///
///     if (const IDeviceImp* const device = free.at(asked, type)) {
///         free.take(*device);
///     }
class FreeDevices {
public:
    /// Requires: the inventory has run on that machine.
    FreeDevices(const Inventory& inventory, const StateManager& machine);

    bool isFree(const IDeviceImp& device) const;
    void take(const IDeviceImp& device) { m_taken.insert(&device); }
    bool isTaken(const IDeviceImp& device) const { return m_taken.contains(&device); }

    /// Gives back a device that an element has which is not looked at any more.
    void release(const IDeviceImp& device) { m_released.insert(&device); }

    /// Gives back a device whose element can have another one, which it gets instead: an element that names no place
    /// takes what it finds. False when it cannot.
    bool exchange(const IDeviceImp& device);

    /// Whether a rule of the script says that the device is too many.
    bool isExtra(const IDeviceImp& device) const { return m_extra.contains(&device); }

    /// The device of that type at the place that is asked for: by the hardware locator, else by that of the operating
    /// system. A free one if there is one; null when there is none at all.
    const IDeviceImp* at(const Inventory::DeviceSpec& asked, const CapabilityImp& type) const;

    /// The free devices of that type, in the order of the store.
    std::vector<const IDeviceImp*> ofType(const CapabilityImp& type) const;

private:
    const Inventory& m_inventory;
    const StateManager& m_machine;
    std::unordered_set<const IDeviceImp*> m_extra;
    std::unordered_set<const IDeviceImp*> m_taken;
    std::unordered_set<const IDeviceImp*> m_released;
};

}  // namespace vrx
