#pragma once

#include "libSystemState/Forward.h"

namespace vrx {

/// How much of the machine a device of that type sums up: 0 for a part that somebody can hold, more for a memory array,
/// all memory, the board, the chassis, the system. What is wrong with a part shows in what sums it up as well, so
/// problems are told in this order.
unsigned breadthOf(const CapabilityImp& type);

}  // namespace vrx
