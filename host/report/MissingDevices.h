#pragma once

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"

namespace vrx::host {

/// The unsatisfied devices that a person would call missing. The engine also lists devices that a `not` forbids and the
/// machine rightly lacks; those are left out here.
Array<Inventory::DeviceSpec> missingDevices(const Array<Inventory::DeviceSpec>& unsatisfied, const XmlDocument& script);

}  // namespace vrx::host
