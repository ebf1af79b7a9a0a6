#pragma once

#include "host/report/JsonWriter.h"
#include "libInventory/Inventory.h"

namespace vrx::host {

/// [{"name", "type", "hwLocator", "osLocator"}, ...]
void writeDevices(JsonWriter& json, const Array<Inventory::DeviceSpec>& devices);

}  // namespace vrx::host
