#pragma once

#include "libInventory/Inventory.h"

namespace vrx {

/// Whether both hold the same part names with the same multiplicities, in whatever order.
bool samePartSet(const Array<Inventory::PartSpec>& a, const Array<Inventory::PartSpec>& b);

/// Whether some entry has the part's name and the same devices in the same order.
bool containsPart(const Array<Inventory::PartSpec>& list, const Inventory::PartSpec& part);

}  // namespace vrx
