#pragma once

#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// Where devices of that type come when somebody works through a machine: processors first, then memory, storage,
/// adapters, power, fans, what is soldered in, what only measures. Types that are of one kind have one number.
unsigned typeRank(const CapabilityImp& type);

/// Whether somebody can take a device of that type out and put in another.
bool isReplaceable(const CapabilityImp& type);

}  // namespace vrx
