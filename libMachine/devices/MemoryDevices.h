#pragma once

#include <cstddef>

#include "libMachine/record/Recording.h"
#include "libMachine/smbios/SmbiosFacts.h"

/// Memory arrays, modules and empty slots as devices, from whatever told of them.
namespace vrx {

/// Adds a Memory device below `parent`, and below it what addMemoryModules adds. Returns the place of the Memory
/// device.
std::size_t addMemory(Recording& recording, std::size_t parent, const MemoryFacts& facts);

/// Adds the arrays and their modules below a Memory device, and sets its InstalledSize. An empty slot becomes a Slot,
/// not a module, and persistent memory is Storage; the firmware's own chips and modules of arrays that are no system
/// memory are left out; those whose array is not among the facts stand directly below the Memory device.
void addMemoryModules(Recording& recording, std::size_t memory, const MemoryFacts& facts);

}  // namespace vrx
