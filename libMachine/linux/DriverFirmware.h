#pragma once

#include <string>

namespace vrx {

/// The version of an adapter's firmware as its driver tells it for the interface of that name, on the machine that this
/// program runs on (ETHTOOL_GDRVINFO, which any user may ask); empty when the driver tells none.
std::string driverFirmware(const std::string& interface);

}  // namespace vrx
