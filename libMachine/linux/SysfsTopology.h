#pragma once

#include <map>
#include <vector>

#include "libMachine/linux/CpuTopology.h"

namespace vrx {

/// What the kernel itself says of its logical processors, without the topology library.
struct SysfsProcessors {
    std::map<unsigned, std::vector<unsigned>> online;  ///< by physical package, in their order
    std::vector<unsigned> offline;                     ///< of these the kernel shows neither core nor caches

    std::size_t onlineCount() const noexcept;
};

/// Reads one file for each logical processor.
SysfsProcessors readSysfsProcessors(const RootFolder& root);

/// One of the packages with its cores and caches.
CpuPackage readSysfsPackage(const RootFolder& root, unsigned id, const std::vector<unsigned>& cpus);

}  // namespace vrx
