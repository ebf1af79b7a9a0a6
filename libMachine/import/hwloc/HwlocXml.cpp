/// The topology that hwloc exports, in the formats 1 to 3. It is read as the XML that it is: hwloc itself refuses a
/// document of which something is missing, and there is no need for its sets of processors. A later format may mean
/// other things by the same names, so it is refused.
///
/// Memory is what the memory nodes have together, as the operating system sees it; modules are there when hwloc ran as
/// root.

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/devices/MemoryDevices.h"
#include "libMachine/devices/PackageDevices.h"
#include "libMachine/import/Converters.h"
#include "libMachine/import/hwloc/HwlocFunctions.h"
#include "libMachine/import/hwloc/HwlocMachine.h"
#include "libMachine/import/mending/XmlMending.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;

void addProcessor(Recording& recording, HwlocPackage& package) {
    CpuPackage& topology = package.topology;
    for (const CpuCore& core : topology.cores) {
        topology.firstCpu =
            &core == &topology.cores.front() ? core.firstCpu : std::min(topology.firstCpu, core.firstCpu);
    }
    const XmlElement& element = *package.element;
    DeviceRecord processor;
    processor.type = u"Processor";
    processor.hwLocator = fmt::format("cpu:{}", topology.id);
    processor.osLocator = cpuFolder(topology.firstCpu);
    processor.parent = 0;
    processor.text(property::VENDOR, hwlocInfo(element, u"CPUVendor"));
    processor.text(property::MODEL, hwlocInfo(element, u"CPUModel"));
    processor.number(property::FAMILY, parseNumber(hwlocInfo(element, u"CPUFamilyNumber")));
    processor.number(property::MODEL_NUMBER, parseNumber(hwlocInfo(element, u"CPUModelNumber")));
    processor.number(property::STEPPING, parseNumber(hwlocInfo(element, u"CPUStepping")));
    if (!topology.cores.empty() && !package.isCutOff) {
        processor.number(property::CORES, topology.cores.size());
        processor.number(property::THREADS, topology.threads());
    }
    processor.name = cleanName(hwlocInfo(element, u"CPUModel"));
    if (processor.name.empty()) {
        processor.name = "Processor";
    }
    const std::size_t place = recording.add(std::move(processor));
    addCoresAndCaches(recording, place, topology);
}

/// hwloc keeps what SMBIOS tells of the machine in the names that the kernel has for it.
SystemFacts systemOf(const HwlocMachine& machine) {
    SystemFacts system;
    system.vendor = machine.info(u"DMISysVendor");
    system.model = machine.info(u"DMIProductName");
    system.version = machine.info(u"DMIProductVersion");
    system.serialNumber = machine.info(u"DMIProductSerial");
    system.uuid = machine.info(u"DMIProductUUID");
    return system;
}

void addFirmware(const HwlocMachine& machine, Recording& recording) {
    ChassisFacts chassis;
    chassis.vendor = machine.info(u"DMIChassisVendor");
    chassis.version = machine.info(u"DMIChassisVersion");
    chassis.serialNumber = machine.info(u"DMIChassisSerial");
    chassis.assetTag = machine.info(u"DMIChassisAssetTag");
    addChassis(recording, chassis);
    BoardFacts board;
    board.vendor = machine.info(u"DMIBoardVendor");
    board.model = machine.info(u"DMIBoardName");
    board.version = machine.info(u"DMIBoardVersion");
    board.serialNumber = machine.info(u"DMIBoardSerial");
    board.assetTag = machine.info(u"DMIBoardAssetTag");
    addBoard(recording, board);
    BiosFacts bios;
    bios.vendor = machine.info(u"DMIBIOSVendor");
    bios.version = machine.info(u"DMIBIOSVersion");
    bios.releaseDate = machine.info(u"DMIBIOSDate");
    addBios(recording, bios);
}

MemoryFacts modulesOf(const HwlocMachine& machine) {
    MemoryFacts facts;
    for (const XmlElement* const element : machine.modules) {
        MemoryModuleFacts module;
        module.place.instance = static_cast<unsigned>(facts.modules.size());
        module.isInstalled = true;
        module.slot = hwlocInfo(*element, u"DeviceLocation");
        module.bank = hwlocInfo(*element, u"BankLocation");
        module.formFactor = toUtf8(cleanText(hwlocInfo(*element, u"FormFactor")));
        module.memoryType = toUtf8(cleanText(hwlocInfo(*element, u"Type")));
        module.vendor = hwlocInfo(*element, u"Vendor");
        module.partNumber = hwlocInfo(*element, u"PartNumber");
        module.serialNumber = hwlocInfo(*element, u"SerialNumber");
        module.assetTag = hwlocInfo(*element, u"AssetTag");
        module.size = hwlocSize(*element);
        module.ranks = static_cast<unsigned>(parseNumber(hwlocInfo(*element, u"Rank")).value_or(0));
        facts.modules.push_back(std::move(module));
    }
    return facts;
}

void addMemory(const HwlocMachine& machine, Recording& recording) {
    const std::uint64_t bytes = machine.isCutOff ? 0 : machine.memory;
    if (bytes == 0 && machine.modules.empty()) {
        return;
    }
    DeviceRecord memory;
    memory.type = u"Memory";
    memory.name = "Memory";
    memory.hwLocator = "memory";
    memory.osLocator = "/proc/meminfo";
    memory.parent = 0;
    memory.size(property::USABLE_SIZE, bytes, Category::Internal());
    const std::size_t place = recording.add(std::move(memory));
    if (!machine.modules.empty()) {
        addMemoryModules(recording, place, modulesOf(machine));
    }
}

}  // namespace

bool isHwlocXml(const RecordingStart& start) {
    const std::string_view root = elementName(start.root());
    return root == "topology" || root == "topologydiff";
}

void convertHwlocXml(std::string_view text, Recording& recording, DamageList& damage) {
    XmlDocument document;
    if (!parseMended(text, document, damage)) {
        return;
    }
    HwlocMachine machine = readHwlocMachine(document);
    if (machine.format > NEWEST_HWLOC_FORMAT) {
        damage.refuse(
            fmt::format("hwloc XML of format {}; the formats 1 to {} can be read, and lstopo can write older ones",
                        machine.format, NEWEST_HWLOC_FORMAT));
        return;
    }
    if (machine.machine == nullptr) {
        return;
    }
    recording.add(systemDevice(systemOf(machine)));
    addFirmware(machine, recording);
    for (HwlocPackage& package : machine.packages) {
        addProcessor(recording, package);
    }
    addMemory(machine, recording);
    addHwlocFunctions(machine, recording);
}

}  // namespace vrx
