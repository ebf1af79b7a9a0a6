#pragma once

#include <vector>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"

namespace vrx {

/// The unsatisfied devices that a person would call missing. The engine also lists devices that a `not` forbids and the
/// machine rightly lacks; those are left out here.
Array<Inventory::DeviceSpec> missingDevices(const Array<Inventory::DeviceSpec>& unsatisfied, const XmlDocument& script);

/// The `device` elements of the script that ask for them, in document order. Of elements that ask for the same, those
/// with findings come first; an element that stands under a `not` is none of them.
std::vector<const XmlElement*> missingElements(const Array<Inventory::DeviceSpec>& missing, const XmlDocument& script);

}  // namespace vrx
