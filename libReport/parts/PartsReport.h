#pragma once

#include <string>

#include "libInventory/Inventory.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// What reading a parts list gave.
struct PartsOutcome {
    Inventory::ParsePartsResult result = Inventory::PartsNoRoot;
    String error;
    Array<Inventory::PartSpec> parts;
};

std::string partsJson(const PartsOutcome& outcome);

/// The blank parts first, then a table of the others. Requires: parts were read.
std::string partsText(const PartsOutcome& outcome, const std::string& path, const TextFormat& format);

}  // namespace vrx
