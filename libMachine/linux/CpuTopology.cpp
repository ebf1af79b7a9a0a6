/// Topology comes from hwloc, which knows the many ways in which kernels describe it, for the live machine and for
/// saved trees alike, so that what tests see is what runs. Of its sources only sysfs is used: its own CPUID reader is
/// switched off, because it knows only the machine that it runs on, and so are devices, which have sources of their own
/// here.
///
/// hwloc takes another root folder from the environment alone (HWLOC_FSROOT). It is set while the topology is loaded
/// and put back afterwards; what a user may have set there to make hwloc show some other machine (HWLOC_XMLFILE,
/// HWLOC_SYNTHETIC, HWLOC_COMPONENTS) is hidden for as long, because a recording is of this machine.
///
/// The environment belongs to the whole process: one topology is loaded at a time, and a host must not read or change
/// the environment on other threads meanwhile.
///
/// hwloc leaves out what contradicts something else that it was told, and gives up without processor 0. The kernel's
/// own numbers of packages are compared with its result, and what it left out is read from the kernel (SysfsTopology).
///
/// Where the kernel shows no topology, hwloc makes one up from the number of processors. That is not asked for.

#include "libMachine/linux/CpuTopology.h"

#include <hwloc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <numeric>
#include <stdexcept>
#include <string>

#include "libCommon/io/SharedLibrary.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/linux/SysfsTopology.h"

namespace vrx {

namespace {

struct HwlocLibrary : SharedLibrary {
    HwlocLibrary() : SharedLibrary("libhwloc.so.15", "libhwloc15") {}

    VRX_LOADED_FUNCTION(hwloc_topology_init)
    VRX_LOADED_FUNCTION(hwloc_topology_destroy)
    VRX_LOADED_FUNCTION(hwloc_topology_set_components)
    VRX_LOADED_FUNCTION(hwloc_topology_set_flags)
    VRX_LOADED_FUNCTION(hwloc_topology_set_icache_types_filter)
    VRX_LOADED_FUNCTION(hwloc_topology_set_io_types_filter)
    VRX_LOADED_FUNCTION(hwloc_topology_set_type_filter)
    VRX_LOADED_FUNCTION(hwloc_topology_load)
    VRX_LOADED_FUNCTION(hwloc_get_type_depth)
    VRX_LOADED_FUNCTION(hwloc_get_obj_by_depth)
    VRX_LOADED_FUNCTION(hwloc_bitmap_first)
    VRX_LOADED_FUNCTION(hwloc_bitmap_weight)
    VRX_LOADED_FUNCTION(hwloc_bitmap_isincluded)
};

/// Only readCpuTopology asks for it before it is known to be there.
const HwlocLibrary& hwloc() {
    static const HwlocLibrary& library = *new HwlocLibrary;
    return library;
}

/// Sets or removes a variable of the environment and puts it back at the end.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value) : m_name(name) {
        if (const char* const before = std::getenv(name)) {
            m_before = before;
        }
        apply(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { apply(m_before ? m_before->c_str() : nullptr); }

private:
    void apply(const char* value) {
        if (value == nullptr) {
            unsetenv(m_name);
        } else {
            setenv(m_name, value, 1);
        }
    }

    const char* m_name;
    std::optional<std::string> m_before;
};

struct TopologyCloser {
    void operator()(hwloc_topology_t topology) const noexcept { hwloc().hwloc_topology_destroy(topology); }
};

using Topology = std::unique_ptr<hwloc_topology, TopologyCloser>;

Topology loadTopology(const RootFolder& root) {
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    const std::string folder = root.folder();
    const ScopedVariable rootFolder("HWLOC_FSROOT", root.isLive() ? nullptr : folder.c_str());
    const ScopedVariable quiet("HWLOC_HIDE_ERRORS", "2");
    const ScopedVariable components("HWLOC_COMPONENTS", nullptr);
    const ScopedVariable file("HWLOC_XMLFILE", nullptr);
    const ScopedVariable synthetic("HWLOC_SYNTHETIC", nullptr);

    Topology topology;
    hwloc_topology_t handle = nullptr;
    if (hwloc().hwloc_topology_init(&handle) != 0) {
        return topology;
    }
    topology.reset(handle);
    hwloc().hwloc_topology_set_components(handle, HWLOC_TOPOLOGY_COMPONENTS_FLAG_BLACKLIST, "x86");
    // Processors that this process may not use (a container's) are part of the machine all the same.
    hwloc().hwloc_topology_set_flags(handle, HWLOC_TOPOLOGY_FLAG_INCLUDE_DISALLOWED);
    hwloc().hwloc_topology_set_icache_types_filter(handle, HWLOC_TYPE_FILTER_KEEP_ALL);
    hwloc().hwloc_topology_set_io_types_filter(handle, HWLOC_TYPE_FILTER_KEEP_NONE);
    hwloc().hwloc_topology_set_type_filter(handle, HWLOC_OBJ_GROUP, HWLOC_TYPE_FILTER_KEEP_NONE);
    if (hwloc().hwloc_topology_load(handle) != 0) {
        topology.reset();
    }
    return topology;
}

unsigned firstCpuOf(hwloc_obj_t object) {
    return static_cast<unsigned>(std::max(hwloc().hwloc_bitmap_first(object->cpuset), 0));
}

CpuCore coreOf(hwloc_obj_t object) {
    return {object->os_index, firstCpuOf(object),
            static_cast<unsigned>(std::max(hwloc().hwloc_bitmap_weight(object->cpuset), 0))};
}

CpuCache::Kind kindOf(hwloc_obj_cache_type_t type) noexcept {
    switch (type) {
        case HWLOC_OBJ_CACHE_DATA: return CpuCache::Kind::Data;
        case HWLOC_OBJ_CACHE_INSTRUCTION: return CpuCache::Kind::Instruction;
        default: return CpuCache::Kind::Unified;
    }
}

/// The core that has the cache alone: the first one below it, when that one holds all of the cache's processors.
hwloc_obj_t onlyCoreBelow(hwloc_obj_t cache) {
    hwloc_obj_t object = cache;
    while (object != nullptr && object->type != HWLOC_OBJ_CORE) {
        object = object->first_child;
    }
    return object != nullptr && hwloc().hwloc_bitmap_isincluded(cache->cpuset, object->cpuset) != 0 ? object : nullptr;
}

CpuCache cacheOf(hwloc_obj_t object, unsigned firstCore) {
    const auto& attributes = object->attr->cache;
    CpuCache cache;
    cache.kind = kindOf(attributes.type);
    cache.level = attributes.depth;
    cache.firstCpu = firstCpuOf(object);
    cache.bytes = attributes.size;
    cache.lineSize = attributes.linesize;
    cache.ways = attributes.associativity;
    if (const hwloc_obj_t core = onlyCoreBelow(object)) {
        cache.core = core->logical_index - firstCore;  // cores of a package are numbered without a gap
    }
    return cache;
}

/// The objects of a type, in hwloc's order.
template <typename Visit>
void forEachOf(hwloc_topology_t topology, hwloc_obj_type_t type, Visit visit) {
    const int depth = hwloc().hwloc_get_type_depth(topology, type);
    hwloc_obj_t object = depth < 0 ? nullptr : hwloc().hwloc_get_obj_by_depth(topology, depth, 0);
    for (; object != nullptr; object = object->next_cousin) {
        visit(object);
    }
}

/// Those inside another one.
template <typename Visit>
void forEachInside(hwloc_topology_t topology, hwloc_obj_t outer, hwloc_obj_type_t type, Visit visit) {
    forEachOf(topology, type, [outer, &visit](hwloc_obj_t object) {
        const bool hasProcessors = hwloc().hwloc_bitmap_first(object->cpuset) >= 0;
        if (hasProcessors && hwloc().hwloc_bitmap_isincluded(object->cpuset, outer->cpuset) != 0) {
            visit(object);
        }
    });
}

CpuPackage packageOf(hwloc_topology_t topology, hwloc_obj_t object) {
    static constexpr hwloc_obj_type_t CACHES[] = {HWLOC_OBJ_L1CACHE,  HWLOC_OBJ_L1ICACHE, HWLOC_OBJ_L2CACHE,
                                                  HWLOC_OBJ_L2ICACHE, HWLOC_OBJ_L3CACHE,  HWLOC_OBJ_L3ICACHE,
                                                  HWLOC_OBJ_L4CACHE,  HWLOC_OBJ_L5CACHE};
    CpuPackage package;
    package.id = object->os_index;
    package.firstCpu = firstCpuOf(object);
    unsigned firstCore = 0;
    forEachInside(topology, object, HWLOC_OBJ_CORE, [&](hwloc_obj_t core) {
        firstCore = package.cores.empty() ? core->logical_index : firstCore;
        package.cores.push_back(coreOf(core));
    });
    for (const hwloc_obj_type_t type : CACHES) {
        forEachInside(topology, object, type,
                      [&](hwloc_obj_t cache) { package.caches.push_back(cacheOf(cache, firstCore)); });
    }
    return package;
}

/// Adds packages that the kernel shows and hwloc does not, and takes the kernel's word for one of which hwloc has fewer
/// processors. Where hwloc counts as many as the kernel, the two only number packages differently.
void addWhatIsLeftOut(const RootFolder& root, const SysfsProcessors& processors, std::vector<CpuPackage>& packages) {
    const std::size_t count =
        std::accumulate(packages.begin(), packages.end(), std::size_t{0},
                        [](std::size_t sum, const CpuPackage& package) { return sum + package.threads(); });
    if (count >= processors.onlineCount()) {
        return;
    }
    for (const auto& [id, cpus] : processors.online) {
        const auto known = std::ranges::find(packages, id, &CpuPackage::id);
        if (known == packages.end()) {
            packages.push_back(readSysfsPackage(root, id, cpus));
        } else if (known->threads() < cpus.size()) {
            *known = readSysfsPackage(root, id, cpus);
        }
    }
    std::ranges::stable_sort(packages, {}, &CpuPackage::firstCpu);
}

}  // namespace

unsigned CpuPackage::threads() const noexcept {
    return std::accumulate(cores.begin(), cores.end(), 0U,
                           [](unsigned sum, const CpuCore& core) { return sum + core.threads; });
}

CpuTopology readCpuTopology(const RootFolder& root) {
    CpuTopology machine;
    const SysfsProcessors processors = readSysfsProcessors(root);
    machine.offline = processors.offline;
    if (!root.list("/sys/devices/system/cpu/cpu0/topology").empty()) {
        if (!hwloc().problem().empty()) {
            throw std::runtime_error(hwloc().problem());
        }
        if (const Topology topology = loadTopology(root)) {
            forEachOf(topology.get(), HWLOC_OBJ_PACKAGE,
                      [&](hwloc_obj_t object) { machine.packages.push_back(packageOf(topology.get(), object)); });
        }
    }
    addWhatIsLeftOut(root, processors, machine.packages);
    return machine;
}

}  // namespace vrx
