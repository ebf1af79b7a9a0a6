#include "libInventory/support/InventoryLog.h"

namespace vrx {

Logger& inventoryLog() {
    static Logger& logger = Logger::get("libInventory.Inventory");
    return logger;
}

}  // namespace vrx
