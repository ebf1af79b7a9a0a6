#pragma once

#include "libInventory/Inventory.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// What tells a device from others, and what somebody needs to know who is to find or to order it. Texts are empty
/// where the device has no such property.
struct DeviceIdentity {
    String guid;
    Inventory::DeviceSpec spec;  ///< type, name and locators
    String manufacturer;
    String model;
    String partNumber;
    String serialNumber;
    String firmware;
};

DeviceIdentity identityOf(const IDeviceImp& device);

}  // namespace vrx
