#pragma once

#include <string>

#include "host/terminal/Console.h"
#include "libInventory/Inventory.h"

namespace vrx::host {

/// What reading a parts list gave.
struct PartsOutcome {
    Inventory::ParsePartsResult result = Inventory::PartsNoRoot;
    String error;
    Array<Inventory::PartSpec> parts;
};

std::string partsJson(const PartsOutcome& outcome);

/// The blank parts first, then a table of the others. Requires: parts were read.
std::string partsText(const PartsOutcome& outcome, const std::string& path, const TextFormat& format);

}  // namespace vrx::host
