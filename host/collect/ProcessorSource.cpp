/// Processors, one for each package, with their cores and caches below them.
///
/// Which packages, cores and caches there are comes from the kernel's topology (CpuTopology), what the processors are
/// from /proc/cpuinfo, rated clocks from cpufreq or the model name ("@ 2.40GHz"), and the name of the socket from
/// SMBIOS when it lists as many populated sockets as there are packages. Where the kernel shows no topology, only the
/// packages that /proc/cpuinfo names are recorded.

#include <fmt/format.h>

#include <map>

#include "host/collect/CollectContext.h"
#include "host/collect/CpuTopology.h"
#include "host/collect/PropertyNames.h"

namespace vrx::host {

namespace {

using Category = PropertyCategoryImp;
constexpr double KILOHERTZ_PER_MEGAHERTZ = 1000;

std::string cpuFolder(unsigned cpu) { return fmt::format("/sys/devices/system/cpu/cpu{}", cpu); }

/// "Intel(R) Xeon(R) CPU E5-2680 v4 @ 2.40GHz" says 2400.
double megahertzInModel(std::string_view model) {
    const std::size_t at = model.find("@ ");
    if (at == std::string_view::npos) {
        return 0;
    }
    const double number = leadingNumber(model.substr(at + 2));
    return model.ends_with("GHz") ? number * 1000 : model.ends_with("MHz") ? number : 0;
}

/// The populated processor sockets in the order of the table.
std::vector<const SmbiosStructure*> populatedSockets(const SmbiosTable& table) {
    static constexpr unsigned CENTRAL_PROCESSOR = 3;
    static constexpr unsigned POPULATED = 0x40;
    std::vector<const SmbiosStructure*> sockets;
    for (const SmbiosStructure* const structure : table.all(SmbiosTable::PROCESSOR)) {
        if (structure->byte(0x05) == CENTRAL_PROCESSOR && (structure->byte(0x18) & POPULATED) != 0) {
            sockets.push_back(structure);
        }
    }
    return sockets;
}

void addSocket(DeviceRecord& processor, const SmbiosStructure& socket) {
    processor.text(property::SLOT, socket.text(0x04));
    processor.text(property::SERIAL_NUMBER, socket.text(0x20));
    processor.text(property::PART_NUMBER, socket.text(0x22));
    if (!processor.has(property::CLOCK)) {
        processor.measure(property::CLOCK, socket.word(0x16), u"MHz");
    }
}

void addModel(DeviceRecord& processor, const CpuInfoBlock& cpu) {
    processor.text(property::VENDOR, cpu.value("vendor_id"));
    processor.text(property::MODEL, cpu.value("model name"));
    processor.number(property::FAMILY, cpu.number("cpu family"));
    processor.number(property::MODEL_NUMBER, cpu.number("model"));
    processor.number(property::STEPPING, cpu.number("stepping"));
    processor.text(property::MICROCODE, cpu.value("microcode"), Category::Internal());
    processor.measure(property::CURRENT_CLOCK, leadingNumber(cpu.value("cpu MHz")), u"MHz", Category::Volatile());
    processor.name = cleanName(cpu.value("model name"));
}

void addClocks(const RootFolder& root, DeviceRecord& processor, unsigned cpu, const CpuInfoBlock* info) {
    const auto kilohertz = [&](std::string_view file) {
        return static_cast<double>(root.number(fmt::format("{}/cpufreq/{}", cpuFolder(cpu), file)).value_or(0));
    };
    const double base = kilohertz("base_frequency") / KILOHERTZ_PER_MEGAHERTZ;
    const double rated = base > 0 || info == nullptr ? base : megahertzInModel(info->value("model name"));
    processor.measure(property::CLOCK, rated, u"MHz");
    processor.measure(property::MAX_CLOCK, kilohertz("cpuinfo_max_freq") / KILOHERTZ_PER_MEGAHERTZ, u"MHz");
}

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

/// Adds the devices of one package.
class PackageRecorder {
public:
    PackageRecorder(CollectContext& context, const CpuPackage& package)
        : m_context(context), m_package(package), m_locator(fmt::format("cpu:{}", package.id)) {}

    void record(const SmbiosStructure* socket) {
        addProcessor(socket);
        for (const CpuCore& core : m_package.cores) {
            addCore(core);
        }
        for (const CpuCache& cache : m_package.caches) {
            addCache(cache);
        }
    }

private:
    void addProcessor(const SmbiosStructure* socket) {
        DeviceRecord processor;
        processor.type = u"Processor";
        processor.hwLocator = m_locator;
        processor.osLocator = cpuFolder(m_package.firstCpu);
        processor.parent = 0;
        const CpuInfoBlock* const info = m_context.cpuInfo.firstOfPackage(m_package.id);
        if (info != nullptr) {
            addModel(processor, *info);
        }
        processor.number(property::CORES, m_package.cores.size());
        processor.number(property::THREADS, m_package.threads());
        addClocks(m_context.root, processor, m_package.firstCpu, info);
        if (socket != nullptr) {
            addSocket(processor, *socket);
        }
        if (processor.name.empty()) {
            processor.name = "Processor";
        }
        m_processor = m_context.recording.add(std::move(processor));
    }

    void addCore(const CpuCore& core) {
        DeviceRecord device;
        device.type = u"ProcessorCore";
        device.name = fmt::format("CPU {} core {}", m_package.id, core.id);
        device.hwLocator = fmt::format("{}/core:{}", m_locator, core.id);
        device.osLocator = cpuFolder(core.firstCpu);
        device.parent = m_processor;
        device.number(property::THREADS, core.threads);
        m_cores.push_back(m_context.recording.add(std::move(device)));
    }

    void addCache(const CpuCache& cache) {
        DeviceRecord device;
        device.type = u"Cache";
        device.name = cacheName(cache);
        device.osLocator = cpuFolder(cache.firstCpu) + "/cache";
        if (cache.core) {
            device.parent = m_cores.at(*cache.core);
            device.hwLocator = m_context.recording.at(*device.parent).hwLocator + "/" + cacheTag(cache);
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
        m_context.recording.add(std::move(device));
    }

    CollectContext& m_context;
    const CpuPackage& m_package;
    std::string m_locator;
    std::size_t m_processor = 0;
    std::vector<std::size_t> m_cores;
    std::map<std::string, unsigned> m_shared;  // how many caches of each tag the package has had so far
};

/// Packages as far as /proc/cpuinfo tells them apart; processors that name none are one package.
void recordFromCpuInfo(CollectContext& context) {
    std::map<std::uint64_t, std::uint64_t> threads;
    for (const CpuInfoBlock& block : context.cpuInfo.blocks()) {
        ++threads[block.number("physical id").value_or(0)];
    }
    for (const auto& [package, count] : threads) {
        const CpuInfoBlock* const named = context.cpuInfo.firstOfPackage(package);
        const CpuInfoBlock& info = named != nullptr ? *named : context.cpuInfo.blocks().front();
        DeviceRecord processor;
        processor.type = u"Processor";
        processor.hwLocator = fmt::format("cpu:{}", package);
        processor.osLocator = fmt::format("/proc/cpuinfo#{}", package);
        processor.parent = 0;
        addModel(processor, info);
        processor.number(property::CORES, info.number("cpu cores"));
        processor.number(property::THREADS, count);
        processor.measure(property::CLOCK, megahertzInModel(info.value("model name")), u"MHz");
        if (processor.name.empty()) {
            processor.name = "Processor";
        }
        context.recording.add(std::move(processor));
    }
}

}  // namespace

void collectProcessors(CollectContext& context) {
    const std::vector<CpuPackage> packages = readCpuTopology(context.root);
    if (packages.empty()) {
        context.note("/sys/devices/system/cpu", "shows no processor packages", "processor cores and caches");
        recordFromCpuInfo(context);
        return;
    }
    const std::vector<const SmbiosStructure*> sockets = populatedSockets(context.smbios);
    for (std::size_t i = 0; i < packages.size(); ++i) {
        PackageRecorder(context, packages[i]).record(sockets.size() == packages.size() ? sockets[i] : nullptr);
    }
}

}  // namespace vrx::host
