/// The topology that hwloc exports, in the forms of its versions 1 and 2. It is read as the XML that it is: hwloc
/// itself refuses a document of which something is missing, and there is no need for its sets of processors.
///
/// Memory is what the memory nodes have together, as the operating system sees it. PCI functions are told by numbers;
/// their names come from this machine's pci.ids.

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/devices/PackageDevices.h"
#include "libMachine/ids/HardwareIds.h"
#include "libMachine/ids/PciIdentity.h"
#include "libMachine/import/Converters.h"
#include "libMachine/import/hwloc/HwlocMachine.h"
#include "libMachine/import/mending/XmlMending.h"
#include "libMachine/linux/RootFolder.h"
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

/// "0106 [8086:a102] [17aa:2247] 31": class, vendor and device, subsystem, revision.
struct PciNumbers {
    PciIdentity identity;
    std::uint32_t revision = 0;
};

PciNumbers pciNumbers(const XmlElement& object) {
    std::uint32_t numbers[6] = {};
    const std::string text = hwlocText(object, u"pci_type");
    std::size_t at = 0;
    for (std::uint32_t& number : numbers) {
        at = std::min(text.find_first_of("0123456789abcdefABCDEF", at), text.size());
        const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), number, 16);
        at = static_cast<std::size_t>(end - text.data());
    }
    PciNumbers result;
    result.identity = {(numbers[0] & 0xFFFF) << 8, false, numbers[1], numbers[2], numbers[3], numbers[4]};
    result.revision = numbers[5];
    return result;
}

StringView networkType(StringView type, const std::string& interface) {
    return interface.starts_with("wl")   ? StringView(u"WirelessNetwork")
           : interface.starts_with("ib") ? StringView(u"Infiniband")
           : type == u"Network"          ? StringView(u"Ethernet")
                                         : type;
}

class DeviceWriter {
public:
    DeviceWriter(const HwlocMachine& machine, Recording& recording) : m_machine(machine), m_recording(recording) {
        for (const auto& [object, above] : machine.functions) {
            wantPciNames(m_names, pciNumbers(*object).identity);
        }
        if (!machine.functions.empty()) {
            m_names.load(RootFolder("/"), "pci.ids");
        }
    }

    void write() {
        std::vector<std::size_t> places;
        for (const auto& [object, above] : m_machine.functions) {
            const PciNumbers numbers = pciNumbers(*object);
            DeviceRecord device = pciFunctionDevice(hwlocText(*object, u"pci_busid"), numbers.identity, m_names);
            device.parent = above == 0 ? 0 : places[above - 1];
            device.add(property::REVISION, String::UTF8Decode(fmt::format("{:02x}", numbers.revision & 0xFF)));
            places.push_back(m_recording.add(std::move(device)));
            writeSystemDevices(*object, places.back());
        }
    }

private:
    /// What the operating system found on a function: a first network interface makes the function the adapter.
    void writeSystemDevices(const XmlElement& function, std::size_t place) {
        enum : std::uint64_t { BLOCK = 0, NETWORK = 2, OPEN_FABRICS = 3 };
        unsigned ports = 0;
        for (const XmlElement* child = function.FirstChildElement(u"object"); child != nullptr;
             child = child->NextSiblingElement(u"object")) {
            const std::uint64_t kind = hwlocNumber(*child, u"osdev_type");
            if (child->Attribute(u"type") != u"OSDev") {
                continue;
            }
            if (kind == BLOCK) {
                writeDisk(*child, place);
            } else if (kind == NETWORK) {
                writeInterface(*child, place, ports++);
            }
        }
    }

    void writeInterface(const XmlElement& object, std::size_t place, unsigned port) {
        const std::string name = hwlocText(object, u"name");
        if (port > 0) {
            DeviceRecord further;
            further.type = m_recording.at(place).type;
            further.name = m_recording.at(place).name;
            further.hwLocator = fmt::format("{}/port:{}", m_recording.at(place).hwLocator, port);
            further.parent = place;
            place = m_recording.add(std::move(further));
        }
        DeviceRecord& adapter = m_recording.at(place);
        adapter.type = networkType(adapter.type, name);
        adapter.osLocator = name;
        adapter.text(property::ADDRESS, hwlocInfo(object, u"Address"));
    }

    void writeDisk(const XmlElement& object, std::size_t controller) {
        static constexpr std::uint64_t KIB = 1024;
        const std::string name = hwlocText(object, u"name");
        if (name.empty() || name.starts_with("dm-") || name.starts_with("md")) {
            return;
        }
        DeviceRecord disk;
        const bool isNvme = name.starts_with("nvme");
        disk.type = isNvme                   ? StringView(u"NvmeDrive")
                    : name.starts_with("sr") ? StringView(u"OpticalDrive")
                                             : StringView(u"Storage");
        disk.osLocator = "/dev/" + name;
        disk.hwLocator = m_recording.at(controller).hwLocator +
                         (isNvme ? "/ns:" + std::string(name.substr(name.find_last_not_of("0123456789") + 1))
                                 : std::string("/disk"));
        disk.parent = controller;
        disk.text(property::VENDOR, hwlocInfo(object, u"Vendor"));
        disk.text(property::MODEL, hwlocInfo(object, u"Model"));
        disk.text(property::SERIAL_NUMBER, hwlocInfo(object, u"SerialNumber"));
        disk.text(property::FIRMWARE_VERSION, hwlocInfo(object, u"Revision"));
        disk.size(property::SIZE, parseNumber(hwlocInfo(object, u"Size")).value_or(0) * KIB);
        disk.size(property::SECTOR_SIZE, parseNumber(hwlocInfo(object, u"SectorSize")).value_or(0));
        disk.name = cleanName(hwlocInfo(object, u"Model"));
        if (disk.name.empty()) {
            disk.name = "Disk";
        }
        m_recording.add(std::move(disk));
    }

    const HwlocMachine& m_machine;
    Recording& m_recording;
    HardwareIds m_names;
};

/// hwloc keeps what SMBIOS tells of the machine in the names that the kernel has for it.
SystemFacts systemOf(const XmlElement* machine) {
    SystemFacts system;
    if (machine != nullptr) {
        system.vendor = hwlocInfo(*machine, u"DMISysVendor");
        system.model = hwlocInfo(*machine, u"DMIProductName");
        system.version = hwlocInfo(*machine, u"DMIProductVersion");
        system.serialNumber = hwlocInfo(*machine, u"DMIProductSerial");
        system.uuid = hwlocInfo(*machine, u"DMIProductUUID");
    }
    return system;
}

void addFirmware(const XmlElement& machine, Recording& recording) {
    ChassisFacts chassis;
    chassis.vendor = hwlocInfo(machine, u"DMIChassisVendor");
    chassis.version = hwlocInfo(machine, u"DMIChassisVersion");
    chassis.serialNumber = hwlocInfo(machine, u"DMIChassisSerial");
    chassis.assetTag = hwlocInfo(machine, u"DMIChassisAssetTag");
    addChassis(recording, chassis);
    BoardFacts board;
    board.vendor = hwlocInfo(machine, u"DMIBoardVendor");
    board.model = hwlocInfo(machine, u"DMIBoardName");
    board.version = hwlocInfo(machine, u"DMIBoardVersion");
    board.serialNumber = hwlocInfo(machine, u"DMIBoardSerial");
    board.assetTag = hwlocInfo(machine, u"DMIBoardAssetTag");
    addBoard(recording, board);
    BiosFacts bios;
    bios.vendor = hwlocInfo(machine, u"DMIBIOSVendor");
    bios.version = hwlocInfo(machine, u"DMIBIOSVersion");
    bios.releaseDate = hwlocInfo(machine, u"DMIBIOSDate");
    addBios(recording, bios);
}

void addMemory(std::uint64_t bytes, Recording& recording) {
    if (bytes == 0) {
        return;
    }
    DeviceRecord memory;
    memory.type = u"Memory";
    memory.name = "Memory";
    memory.hwLocator = "memory";
    memory.osLocator = "/proc/meminfo";
    memory.parent = 0;
    memory.size(property::USABLE_SIZE, bytes, Category::Internal());
    recording.add(std::move(memory));
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
    if (machine.machine == nullptr) {
        return;
    }
    recording.add(systemDevice(systemOf(machine.machine)));
    addFirmware(*machine.machine, recording);
    for (HwlocPackage& package : machine.packages) {
        addProcessor(recording, package);
    }
    addMemory(machine.isCutOff ? 0 : machine.memory, recording);
    DeviceWriter(machine, recording).write();
}

}  // namespace vrx
