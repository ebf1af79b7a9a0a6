#include "libMachine/devices/PackageDevices.h"

#include <fmt/format.h>

#include <map>
#include <vector>

#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

std::string_view kindName(CpuCache::Kind kind) noexcept {
    switch (kind) {
        case CpuCache::Kind::Data: return "Data";
        case CpuCache::Kind::Instruction: return "Instruction";
        default: return "Unified";
    }
}

/// "l1d", "l1i", "l2"
std::string cacheTag(const CpuCache& cache) {
    switch (cache.kind) {
        case CpuCache::Kind::Data: return fmt::format("l{}d", cache.level);
        case CpuCache::Kind::Instruction: return fmt::format("l{}i", cache.level);
        default: return fmt::format("l{}", cache.level);
    }
}

std::string cacheName(const CpuCache& cache) {
    switch (cache.kind) {
        case CpuCache::Kind::Data: return fmt::format("L{} data cache", cache.level);
        case CpuCache::Kind::Instruction: return fmt::format("L{} instruction cache", cache.level);
        default: return fmt::format("L{} cache", cache.level);
    }
}

class PackageFiller {
public:
    PackageFiller(Recording& recording, std::size_t processor, const CpuPackage& package)
        : m_recording(recording),
          m_package(package),
          m_processor(processor),
          m_locator(recording.at(processor).hwLocator) {}

    void fill() {
        for (const CpuCore& core : m_package.cores) {
            addCore(core);
        }
        for (const CpuCache& cache : m_package.caches) {
            addCache(cache);
        }
    }

private:
    void addCore(const CpuCore& core) {
        DeviceRecord device;
        device.type = u"ProcessorCore";
        device.name = fmt::format("CPU {} core {}", m_package.id, core.id);
        device.hwLocator = fmt::format("{}/core:{}", m_locator, core.id);
        device.osLocator = cpuFolder(core.firstCpu);
        device.parent = m_processor;
        device.number(property::THREADS, core.threads);
        m_cores.push_back(m_recording.add(std::move(device)));
    }

    void addCache(const CpuCache& cache) {
        DeviceRecord device;
        device.type = u"Cache";
        device.name = cacheName(cache);
        device.osLocator = cpuFolder(cache.firstCpu) + "/cache";
        if (cache.core) {
            device.parent = m_cores.at(*cache.core);
            device.hwLocator = m_recording.at(*device.parent).hwLocator + "/" + cacheTag(cache);
        } else {
            const std::string tag = cacheTag(cache);
            device.parent = m_processor;
            device.hwLocator = fmt::format("{}/{}:{}", m_locator, tag, m_shared[tag]++);
        }
        device.number(property::LEVEL, cache.level);
        device.text(property::CACHE_TYPE, kindName(cache.kind));
        device.size(property::SIZE, cache.bytes);
        device.size(property::LINE_SIZE, cache.lineSize);
        if (cache.ways > 0) {
            device.number(property::ASSOCIATIVITY, static_cast<std::uint64_t>(cache.ways));
        }
        m_recording.add(std::move(device));
    }

    Recording& m_recording;
    const CpuPackage& m_package;
    std::size_t m_processor;
    std::string m_locator;
    std::vector<std::size_t> m_cores;
    std::map<std::string, unsigned> m_shared;  // how many caches of each tag the package has had so far
};

}  // namespace

std::string cpuFolder(unsigned cpu) { return fmt::format("/sys/devices/system/cpu/cpu{}", cpu); }

void addCoresAndCaches(Recording& recording, std::size_t processor, const CpuPackage& package) {
    PackageFiller(recording, processor, package).fill();
}

}  // namespace vrx
