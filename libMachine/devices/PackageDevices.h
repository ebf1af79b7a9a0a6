#pragma once

#include <cstddef>
#include <string>

#include "libMachine/linux/CpuTopology.h"
#include "libMachine/record/Recording.h"

/// What is inside a processor package as devices, whoever read the topology.
namespace vrx {

/// The folder in which the kernel shows a logical processor.
std::string cpuFolder(unsigned cpu);

/// Adds the cores of a package below its processor, and the caches below the core that has them alone, else below the
/// processor.
void addCoresAndCaches(Recording& recording, std::size_t processor, const CpuPackage& package);

}  // namespace vrx
