#pragma once

#include "libCommon/logging/Logger.h"

namespace vrx {

/// The logger of the engine and of everything around it, "libInventory.Inventory".
Logger& inventoryLog();

}  // namespace vrx
