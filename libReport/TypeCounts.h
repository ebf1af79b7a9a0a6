#pragma once

#include <cstddef>
#include <vector>

#include "libInventory/Inventory.h"

namespace vrx {

/// How many devices of one type a script asks for, and how many of them the machine has.
struct TypeCount {
    String type;
    std::size_t asked = 0;
    std::size_t met = 0;
};

/// In the order in which somebody works through a machine. Elements in a `not`, and those of alternatives that were not
/// chosen, do not count.
///
/// Requires: the inventory has run.
std::vector<TypeCount> typeCounts(const Inventory& inventory);

}  // namespace vrx
