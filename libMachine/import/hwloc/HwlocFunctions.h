#pragma once

#include "libMachine/import/hwloc/HwlocMachine.h"
#include "libMachine/record/Recording.h"

namespace vrx {

/// Adds the PCI functions of a machine as a tree, and the disks and network interfaces that the operating system found
/// on them. Requires: the recording has its root.
void addHwlocFunctions(const HwlocMachine& machine, Recording& recording);

}  // namespace vrx
