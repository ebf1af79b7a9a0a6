/// Packages, cores and caches as the kernel's files show them, for the machines of which the topology library leaves
/// something out: it drops a package whose processors conflict with what the firmware says of a bus's locality, and
/// reads nothing of the others when processor 0 is offline.
///
/// Processors that share a core name each other, and so do those that share a cache: the first of them stands for all.

#include "libMachine/linux/SysfsTopology.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <tuple>

#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

const std::string CPUS = "/sys/devices/system/cpu/";

std::string cpuFile(unsigned cpu, std::string_view file) { return fmt::format("{}cpu{}/{}", CPUS, cpu, file); }

/// The processors of a mask that the machine has: groups of 32 bits in hexadecimal digits, the highest first.
std::vector<unsigned> cpusOfMask(std::string_view mask, const std::vector<unsigned>& known) {
    static constexpr unsigned BITS = 32;
    std::vector<std::uint32_t> groups;
    while (!mask.empty()) {
        const std::size_t comma = mask.rfind(',');
        groups.push_back(parseHex(mask.substr(comma == std::string_view::npos ? 0 : comma + 1)).value_or(0));
        mask = mask.substr(0, comma == std::string_view::npos ? 0 : comma);
    }
    std::vector<unsigned> cpus;
    std::ranges::copy_if(known, std::back_inserter(cpus), [&groups](unsigned cpu) {
        return cpu / BITS < groups.size() && (groups[cpu / BITS] >> (cpu % BITS) & 1U) != 0;
    });
    return cpus;
}

/// "32K"; 0 when it cannot be read.
std::uint64_t cacheBytes(const std::string& text) {
    static constexpr std::uint64_t KIB = 1024;
    const std::uint64_t number = parseNumber(std::string_view(text).substr(0, text.find_first_of("KM"))).value_or(0);
    const std::uint64_t factor = text.ends_with('K') ? KIB : text.ends_with('M') ? KIB * KIB : 1;
    return number > UINT64_MAX / factor ? 0 : number * factor;
}

class SysfsPackageReader {
public:
    SysfsPackageReader(const RootFolder& root, const std::vector<unsigned>& cpus) : m_root(root), m_cpus(cpus) {}

    CpuPackage read(unsigned id) {
        m_package.id = id;
        m_package.firstCpu = m_cpus.front();
        for (const unsigned cpu : m_cpus) {
            readCore(cpu);
        }
        for (const unsigned cpu : m_cpus) {
            readCaches(cpu);
        }
        std::ranges::stable_sort(m_package.caches, {}, [](const CpuCache& cache) {
            return std::tuple(cache.level, cache.kind == CpuCache::Kind::Instruction, cache.firstCpu);
        });
        return std::move(m_package);
    }

private:
    std::string text(unsigned cpu, std::string_view file) const { return m_root.text(cpuFile(cpu, file)); }

    void readCore(unsigned cpu) {
        const std::string core = text(cpu, "topology/core_cpus");
        const std::vector<unsigned> siblings =
            cpusOfMask(core.empty() ? text(cpu, "topology/thread_siblings") : core, m_cpus);
        const unsigned first = siblings.empty() ? cpu : siblings.front();
        auto [at, isNew] = m_coreOf.emplace(first, m_package.cores.size());
        if (isNew) {
            const auto id = m_root.number(cpuFile(cpu, "topology/core_id"));
            m_package.cores.push_back({static_cast<unsigned>(id.value_or(first)), cpu, 0});
        }
        ++m_package.cores[at->second].threads;
        m_coreOf.emplace(cpu, at->second);
    }

    void readCaches(unsigned cpu) {
        for (const std::string& name : m_root.list(cpuFile(cpu, "cache"))) {
            if (name.starts_with("index")) {
                readCache(cpu, "cache/" + name + "/");
            }
        }
    }

    void readCache(unsigned cpu, const std::string& folder) {
        const std::vector<unsigned> sharers = cpusOfMask(text(cpu, folder + "shared_cpu_map"), m_cpus);
        if (!sharers.empty() && sharers.front() != cpu) {
            return;
        }
        const auto number = [&](std::string_view file) {
            return static_cast<unsigned>(m_root.number(cpuFile(cpu, folder + std::string(file))).value_or(0));
        };
        const std::string type = text(cpu, folder + "type");
        CpuCache cache;
        cache.kind = type == "Data"          ? CpuCache::Kind::Data
                     : type == "Instruction" ? CpuCache::Kind::Instruction
                                             : CpuCache::Kind::Unified;
        cache.level = number("level");
        cache.firstCpu = cpu;
        cache.bytes = cacheBytes(text(cpu, folder + "size"));
        cache.lineSize = number("coherency_line_size");
        cache.ways = static_cast<int>(std::min(number("ways_of_associativity"), 1U << 16U));
        const std::size_t core = m_coreOf.at(cpu);
        if (std::ranges::all_of(sharers, [&](unsigned sharer) { return m_coreOf.at(sharer) == core; })) {
            cache.core = static_cast<unsigned>(core);
        }
        if (cache.level != 0) {
            m_package.caches.push_back(cache);
        }
    }

    const RootFolder& m_root;
    const std::vector<unsigned>& m_cpus;
    CpuPackage m_package;
    std::map<unsigned, std::size_t> m_coreOf;  // by logical processor: place in the package's cores
};

}  // namespace

std::size_t SysfsProcessors::onlineCount() const noexcept {
    return std::accumulate(online.begin(), online.end(), std::size_t{0},
                           [](std::size_t sum, const auto& package) { return sum + package.second.size(); });
}

SysfsProcessors readSysfsProcessors(const RootFolder& root) {
    SysfsProcessors processors;
    for (const std::string& name : root.list(CPUS)) {
        const auto cpu = name.starts_with("cpu") ? parseNumber(std::string_view(name).substr(3)) : std::nullopt;
        if (!cpu || *cpu > INT32_MAX) {
            continue;
        }
        const auto number = static_cast<unsigned>(*cpu);
        if (const auto package = root.number(cpuFile(number, "topology/physical_package_id"))) {
            processors.online[static_cast<unsigned>(*package)].push_back(number);
        } else if (root.text(cpuFile(number, "online")) == "0") {
            processors.offline.push_back(number);
        }
    }
    for (auto& [package, cpus] : processors.online) {
        std::ranges::sort(cpus);
    }
    return processors;
}

CpuPackage readSysfsPackage(const RootFolder& root, unsigned id, const std::vector<unsigned>& cpus) {
    return SysfsPackageReader(root, cpus).read(id);
}

}  // namespace vrx
