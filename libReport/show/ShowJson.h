#pragma once

#include <string>
#include <vector>

#include "libSystemState/Forward.h"

namespace vrx {

/// Devices for programs: one object with all of them, in their order, and their properties.
std::string showJson(const std::vector<const IDeviceImp*>& devices);

}  // namespace vrx
