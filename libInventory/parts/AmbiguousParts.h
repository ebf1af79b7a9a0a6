#pragma once

#include <vector>

#include "libInventory/Inventory.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Parts of a list, one as often as the machine holds it.
using PartInstances = std::vector<const Inventory::PartSpec*>;

/// Finds the parts of `fullParts` that claim the same devices. Each group of two or more is added to `ambiguousGroups`
/// once; the parts whose devices the clearly best part of their group has all are added to `discard`.
/// `singlePartTable` lists, by device, the parts that could each claim it on its own.
void findAmbiguousParts(Array<Inventory::PartSpec>& discard, Array<Array<Inventory::PartSpec>>& ambiguousGroups,
                        const Inventory::DeviceToPartsTable& singlePartTable, const PartInstances& fullParts,
                        const StateManager& state);

/// Writes the devices of a part that the store knows to the log, one a line: "  " locator " - " name.
void logPartDevices(const Inventory::PartSpec& part, const StateManager& state);

}  // namespace vrx
