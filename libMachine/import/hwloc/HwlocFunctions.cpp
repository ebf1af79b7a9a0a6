/// PCI functions are told by numbers; their names come from this machine's pci.ids. The last two digits of the class,
/// which only format 3 has, are left out, so that all formats give equal machines.
///
/// What the operating system calls an object on a function has a kind, which up to format 2 is one number and from
/// format 3 on a set of bits. Objects of kinds that are no hardware of their own (GPU and DMA handles) tell what their
/// driver knows of the function.

#include "libMachine/import/hwloc/HwlocFunctions.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "libMachine/ids/HardwareIds.h"
#include "libMachine/ids/PciIdentity.h"
#include "libMachine/linux/RootFolder.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

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

enum class ObjectKind : std::uint8_t { Disk, Interface, Fabric, Other };

/// An Infiniband device and a partition of memory have the bits of a network and of storage as well.
ObjectKind kindOf(const XmlElement& object, unsigned format) {
    enum : std::uint64_t { BLOCK = 0, NETWORK = 2, OPEN_FABRICS = 3 };
    enum : std::uint64_t { STORAGE_BIT = 1, MEMORY_BIT = 2, NETWORK_BIT = 16, OPEN_FABRICS_BIT = 32 };
    const std::uint64_t kind = hwlocNumber(object, u"osdev_type");
    if (format < 3) {
        return kind == BLOCK          ? ObjectKind::Disk
               : kind == NETWORK      ? ObjectKind::Interface
               : kind == OPEN_FABRICS ? ObjectKind::Fabric
                                      : ObjectKind::Other;
    }
    return (kind & OPEN_FABRICS_BIT) != 0                       ? ObjectKind::Fabric
           : (kind & NETWORK_BIT) != 0                          ? ObjectKind::Interface
           : (kind & (STORAGE_BIT | MEMORY_BIT)) == STORAGE_BIT ? ObjectKind::Disk
                                                                : ObjectKind::Other;
}

struct DriverFact {
    StringView key;
    StringView info;
};

constexpr DriverFact DRIVER_FACTS[] = {
    {property::SERIAL_NUMBER, u"NVIDIASerial"},
    {property::SERIAL_NUMBER, u"AMDSerial"},
    {property::UUID, u"NVIDIAUUID"},
    {property::UUID, u"AMDUUID"},
};

class FunctionWriter {
public:
    FunctionWriter(const HwlocMachine& machine, Recording& recording) : m_machine(machine), m_recording(recording) {
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
            device.text(property::SLOT, hwlocInfo(*object, u"PCISlot"));
            places.push_back(m_recording.add(std::move(device)));
            writeSystemDevices(*object, places.back());
        }
    }

private:
    /// What the operating system found on a function: a first network interface makes the function the adapter.
    void writeSystemDevices(const XmlElement& function, std::size_t place) {
        unsigned ports = 0;
        for (const XmlElement* child = function.FirstChildElement(u"object"); child != nullptr;
             child = child->NextSiblingElement(u"object")) {
            if (child->Attribute(u"type") != u"OSDev") {
                continue;
            }
            switch (kindOf(*child, m_machine.format)) {
                case ObjectKind::Disk: writeDisk(*child, place); break;
                case ObjectKind::Interface: writeInterface(*child, place, ports++); break;
                case ObjectKind::Fabric: writeFabric(*child, place); break;
                case ObjectKind::Other: writeDriverFacts(*child, place); break;
            }
        }
    }

    /// The adapter of which interfaces may be ports; one without an interface goes by this name.
    void writeFabric(const XmlElement& object, std::size_t place) {
        DeviceRecord& adapter = m_recording.at(place);
        if (!adapter.has(property::NODE_GUID)) {
            adapter.text(property::NODE_GUID, hwlocInfo(object, u"NodeGUID"));
        }
    }

    void writeDriverFacts(const XmlElement& object, std::size_t place) {
        DeviceRecord& device = m_recording.at(place);
        for (const auto& [key, name] : DRIVER_FACTS) {
            if (!device.has(key)) {
                device.text(key, hwlocInfo(object, name));
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
        disk.size(property::SIZE, hwlocSize(object));
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

}  // namespace

void addHwlocFunctions(const HwlocMachine& machine, Recording& recording) {
    FunctionWriter(machine, recording).write();
}

}  // namespace vrx
