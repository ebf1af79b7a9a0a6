#pragma once

#include <cstdint>
#include <string>

#include "libMachine/record/DeviceRecord.h"

/// PCI functions as devices, by their numbers, whoever read them.
namespace vrx {

class HardwareIds;

/// The numbers that say what a function is.
struct PciIdentity {
    std::uint32_t classCode = 0;    ///< three bytes
    bool hasWholeClassCode = true;  ///< not without the third byte, the programming interface
    std::uint32_t vendor = 0;
    std::uint32_t device = 0;
    std::uint32_t subVendor = 0;  ///< 0 when it has no subsystem
    std::uint32_t subDevice = 0;
};

/// Tells the table which names the function will need.
void wantPciNames(HardwareIds& names, const PciIdentity& identity);

/// The function at an address ("0000:00:1f.2"): type, name, locators, identifiers and their names.
DeviceRecord pciFunctionDevice(const std::string& address, const PciIdentity& identity, const HardwareIds& names);

}  // namespace vrx
