#pragma once

#include <string>
#include <string_view>

namespace vrx {

class Recording;

/// The hardware locator for a device that the kernel shows in a folder of sysfs: of the recorded device of that folder
/// or of the nearest above it, else what the firmware or the device tree calls the platform device
/// ("platform:fe330000.mmc", "platform:coretemp.0"), or "unplaced" for a path that is not the device's own. Addresses
/// on an I2C or SPI bus between the two are kept ("pci:0000:00:1f.4/i2c:1b"); what the kernel counts up on the way is
/// not. Requires: the controllers are recorded.
std::string placeOfFolder(const Recording& recording, std::string_view sysPath);

/// Whether a folder belongs to a device that is software only.
bool isVirtualFolder(std::string_view sysPath) noexcept;

}  // namespace vrx
