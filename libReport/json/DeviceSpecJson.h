#pragma once

#include "libInventory/Inventory.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

/// {"name", "type", "hwLocator", "osLocator"}
void writeDevice(JsonWriter& json, const Inventory::DeviceSpec& device);

/// [{"name", "type", "hwLocator", "osLocator"}, ...]
void writeDevices(JsonWriter& json, const Array<Inventory::DeviceSpec>& devices);

}  // namespace vrx
