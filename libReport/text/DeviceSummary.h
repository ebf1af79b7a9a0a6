#pragma once

#include <string>

#include "libInventory/Inventory.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// What a person wants to know first about a device of its type, in a few words fit for a terminal: "16 GB DDR4 3200
/// MT/s, Example M-16". Empty when it has no such property. What its name says already is left out.
std::string deviceSummary(const IDeviceImp& device);

/// A device in a few words: type, name in quotes and where it is, as far as it has them: `Fan "Fan 1" (fan:1)`.
std::string deviceTitle(const IDeviceImp& device);
std::string deviceTitle(const Inventory::DeviceSpec& device);

}  // namespace vrx
