#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace vrx {

class RootFolder;

struct CpuCore {
    unsigned id = 0;        ///< the number that the package gives it
    unsigned firstCpu = 0;  ///< the logical processor that comes first
    unsigned threads = 0;
};

struct CpuCache {
    enum class Kind : std::uint8_t { Unified, Data, Instruction };

    Kind kind = Kind::Unified;
    unsigned level = 0;
    unsigned firstCpu = 0;
    std::optional<unsigned> core;  ///< place in the package's cores when one core has it alone
    std::uint64_t bytes = 0;
    unsigned lineSize = 0;  ///< in bytes; 0 when unknown
    int ways = 0;           ///< not above 0 when unknown or fully associative
};

struct CpuPackage {
    unsigned id = 0;  ///< the physical package number
    unsigned firstCpu = 0;
    std::vector<CpuCore> cores;
    std::vector<CpuCache> caches;

    unsigned threads() const noexcept;
};

struct CpuTopology {
    std::vector<CpuPackage> packages;
    std::vector<unsigned> offline;  ///< logical processors of which the kernel shows nothing
};

/// The processor packages of a machine with their cores and caches, as the kernel shows them below
/// /sys/devices/system/cpu; none when it shows nothing there. Throws a std::runtime_error when it does and hwloc is not
/// installed.
///
/// Requires: no other thread uses the environment at the same time (hwloc takes its root folder from there).
CpuTopology readCpuTopology(const RootFolder& root);

}  // namespace vrx
