/// Processors, one for each package, with their cores and caches below them.
///
/// Which packages, cores and caches there are comes from the kernel's topology (CpuTopology), what the processors are
/// from /proc/cpuinfo, rated clocks from cpufreq or the model name ("@ 2.40GHz"), and the name of the socket from
/// SMBIOS when it lists as many populated sockets as there are packages. Where the kernel shows no topology, only the
/// packages that /proc/cpuinfo names are recorded, and where there is none either (a saved SMBIOS table alone), what
/// firmware says of the processors.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <map>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/devices/PackageDevices.h"
#include "libMachine/devices/ProcessorDevices.h"
#include "libMachine/linux/CpuTopology.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
constexpr double KILOHERTZ_PER_MEGAHERTZ = 1000;

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

/// Adds the devices of one package.
class PackageRecorder {
public:
    PackageRecorder(CollectContext& context, const CpuPackage& package)
        : m_context(context), m_package(package), m_locator(fmt::format("cpu:{}", package.id)) {}

    void record(const ProcessorFacts* socket) {
        addProcessor(socket);
        addCoresAndCaches(m_context.recording, m_processor, m_package);
    }

private:
    void addProcessor(const ProcessorFacts* socket) {
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
            addSocketFacts(processor, *socket);
        }
        if (processor.name.empty()) {
            processor.name = "Processor";
        }
        m_processor = m_context.recording.add(std::move(processor));
    }

    CollectContext& m_context;
    const CpuPackage& m_package;
    std::string m_locator;
    std::size_t m_processor = 0;
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

/// Of processors that are offline the kernel shows neither cores nor caches, so those of a package are not counted.
void noteOffline(CollectContext& context, const std::string& reason) {
    static const std::string PATH = "/sys/devices/system/cpu";
    context.note(PATH, CollectNote::Reason::SaysNothing, reason,
                 {"cores, threads and caches that are theirs", {u"ProcessorCore", u"Cache"}});
    context.recording.addUnread({String::UTF8Decode(PATH),
                                 CapabilityImp(StringView(u"Processor")),
                                 String::UTF8Decode(reason),
                                 {String(property::CORES), String(property::THREADS)}});
}

}  // namespace

void collectProcessors(CollectContext& context) {
    const CpuTopology topology = readCpuTopology(context.root);
    const std::vector<CpuPackage>& packages = topology.packages;
    if (!topology.offline.empty()) {
        noteOffline(context, fmt::format("processors {} are offline", fmt::join(topology.offline, ", ")));
    }
    const std::vector<const ProcessorFacts*> sockets = populatedSockets(context.smbios);
    for (std::size_t i = 0; i < packages.size(); ++i) {
        PackageRecorder(context, packages[i]).record(sockets.size() == packages.size() ? sockets[i] : nullptr);
    }
    if (packages.empty()) {
        context.note("/sys/devices/system/cpu", CollectNote::Reason::SaysNothing, "shows no processor packages",
                     {"processor cores and caches", {u"ProcessorCore", u"Cache"}});
        recordFromCpuInfo(context);
    }
    if (packages.empty() && context.cpuInfo.blocks().empty()) {
        addProcessors(context.recording, context.smbios);
    }
    addEmptySockets(context.recording, context.smbios);
}

}  // namespace vrx
