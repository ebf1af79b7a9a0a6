#pragma once

#include <string>
#include <string_view>

#include "host/collect/DeviceRecord.h"
#include "host/collect/PropertyNames.h"
#include "host/collect/SmbiosTable.h"

namespace vrx::host {

struct CollectContext;

/// Adds what the firmware says of the system, the board, the chassis or the BIOS to a device. The kernel's copies in
/// /sys/class/dmi/id come first, because most of them may be read by anyone; what they lack is taken from the SMBIOS
/// table. Notes which of them need root.
void addDmiFields(CollectContext& context, SmbiosTable::Type type, DeviceRecord& device);

/// "Vendor Model" from a device's properties, the model alone, or the given text where the model is not known.
/// `modelKey` is the property that tells the model.
std::string nameFromModel(const DeviceRecord& device, std::string_view otherwise,
                          StringView modelKey = property::MODEL);

}  // namespace vrx::host
