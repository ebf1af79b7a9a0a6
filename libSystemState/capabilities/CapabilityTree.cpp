#include "libSystemState/capabilities/CapabilityTree.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>
#include <utility>

#include "libSystemState/capabilities/CapabilityNames.h"

/// The tree of device types, written as one table in the order in which sets of capabilities list their names: a row is
/// the canonical name of a node, its level, and its aliases. A row of level 1 stands below the nearest row of level 0
/// before it.
///
/// Every name and alias is entered in one hash table under its folded text, so a look-up costs one folding and one
/// probe; a host's names have a table of their own, which is looked at when the first does not have the name. Numbers
/// grow from parent to child, which bounds the walk of `isWithin`: it climbs only while the number is greater than the
/// one it looks for.

namespace vrx {

namespace {

constexpr StringView RESERVED_NAMES[] = {u"ALL", u"INVALID"};

struct Row {
    unsigned level;
    StringView name;
    std::array<StringView, 3> aliases = {};
};

constexpr Row TABLE[] = {
    {0, u"System", {u"Computer", u"Machine"}},
    {0, u"Chassis", {u"Enclosure"}},
    {0, u"Motherboard", {u"BaseBoard", u"SystemBoard"}},
    {0, u"Firmware"},
    {1, u"BIOS", {u"UEFI"}},
    {1, u"ManagementController", {u"BMC"}},

    {0, u"Processor", {u"CPU"}},
    {0, u"ProcessorCore", {u"Core"}},
    {0, u"Cache"},
    {0, u"Coprocessor", {u"Accelerator"}},

    {0, u"Memory"},
    {1, u"MemoryModule", {u"DIMM"}},
    {0, u"MemoryArray"},
    {0, u"MemoryController"},

    {0, u"Storage", {u"Disk"}},
    {1, u"HardDiskDrive", {u"HDD", u"HardDrive", u"HardDisk"}},
    {1, u"SolidStateDrive", {u"SSD"}},
    {1, u"NvmeDrive", {u"NVMe"}},
    {1, u"OpticalDrive", {u"CDROM", u"DVD"}},
    {1, u"FloppyDrive", {u"Floppy"}},
    {1, u"TapeDrive", {u"Tape"}},
    {1, u"FlashDrive"},
    {1, u"MemoryCard"},
    {0, u"Volume", {u"Partition", u"LogicalDrive"}},
    {0, u"StorageController"},
    {1, u"RaidController", {u"RAID"}},
    {1, u"SataController", {u"SATA", u"AHCI"}},
    {1, u"SasController", {u"SAS", u"HBA"}},
    {1, u"NvmeController"},
    {1, u"IdeController", {u"IDE"}},

    {0, u"Network", {u"NetworkAdapter", u"NIC"}},
    {1, u"Ethernet", {u"EthernetAdapter"}},
    {1, u"WirelessNetwork", {u"WiFi", u"WLAN"}},
    {1, u"Infiniband"},
    {1, u"MobileBroadband", {u"WWAN"}},
    {1, u"FibreChannel"},
    {0, u"Bluetooth"},
    {0, u"Modem"},

    {0, u"Display", {u"GraphicsAdapter", u"GPU", u"VideoAdapter"}},
    {0, u"Monitor", {u"Screen"}},

    {0, u"Multimedia"},
    {1, u"AudioDevice", {u"Sound", u"Audio"}},
    {1, u"Camera", {u"Webcam"}},
    {1, u"VideoCapture"},

    {0, u"Input"},
    {1, u"Keyboard"},
    {1, u"PointingDevice", {u"Mouse"}},
    {1, u"TouchPad"},
    {1, u"TouchScreen"},
    {1, u"Joystick"},
    {1, u"FingerprintReader"},
    {1, u"CardReader"},

    {0, u"Bus"},
    {1, u"PciBridge"},
    {1, u"UsbController"},
    {1, u"UsbHub"},
    {1, u"FirewireController"},
    {1, u"ThunderboltController"},
    {1, u"I2cBus"},
    {1, u"SerialBus"},
    {0, u"PciDevice", {u"PCI"}},
    {0, u"UsbDevice", {u"USB"}},

    {0, u"Port"},
    {1, u"SerialPort"},
    {1, u"ParallelPort"},
    {1, u"UsbPort"},
    {1, u"VideoPort"},
    {1, u"AudioPort"},
    {1, u"NetworkPort"},

    {0, u"Power"},
    {1, u"PowerSupply", {u"PSU"}},
    {1, u"Battery"},
    {1, u"PowerAdapter"},

    {0, u"Cooling"},
    {1, u"Fan", {u"Blower"}},
    {1, u"LiquidCooler"},
    {0, u"Sensor"},
    {1, u"TemperatureSensor"},
    {1, u"VoltageSensor"},
    {1, u"CurrentSensor"},
    {1, u"PowerSensor"},
    {1, u"FanSensor"},

    {0, u"Security"},
    {1, u"TrustedPlatformModule", {u"TPM"}},
    {1, u"SmartCard"},

    {0, u"Printer"},
    {0, u"Scanner"},
    {0, u"Slot", {u"ExpansionSlot"}},
    {0, u"Clock", {u"RTC"}},
    {0, u"Indicator", {u"LED"}},
    {0, u"OperatingSystem", {u"OS"}},
    {0, u"Driver"},
    {0, u"Generic", {u"Device", u"Unknown"}},
};

bool isReserved(StringView name) {
    for (const StringView reserved : RESERVED_NAMES) {
        if (equalNoCase(name, reserved)) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::vector<StringView> capabilityNames() {
    std::vector<StringView> names;
    for (const Row& row : TABLE) {
        names.push_back(row.name);
        std::ranges::copy_if(row.aliases, std::back_inserter(names), [](StringView alias) { return !alias.empty(); });
    }
    return names;
}

CapabilityTree& CapabilityTree::instance() {
    static auto& tree = *new CapabilityTree;  // never destroyed: threads may end after main
    return tree;
}

CapabilityTree::CapabilityTree() {
    m_parents[0] = 0;
    m_ownNames.emplace_back();
    Node top = 0;
    for (const Row& row : TABLE) {
        const Node node = append(row.level == 0 ? Node{0} : top);
        m_ownNames.emplace_back(row.name);
        if (row.level == 0) {
            top = node;
        }
        enterName(m_ownByFoldedName, foldCase(row.name), node);
        for (const StringView alias : row.aliases) {
            if (!alias.empty()) {
                enterName(m_ownByFoldedName, foldCase(alias), node);
            }
        }
    }
}

CapabilityTree::Node CapabilityTree::find(StringView name) const {
    const String folded = foldCase(name);
    const Node own = findOwn(folded);
    if (own != 0 || !m_hasDefined.load(std::memory_order_acquire)) {
        return own;
    }
    const std::shared_lock lock(m_mutex);
    const auto at = m_definedByFoldedName.find(folded);
    return at == m_definedByFoldedName.end() ? Node{0} : at->second;
}

CapabilityTree::Node CapabilityTree::findOwn(const String& foldedName) const {
    const auto at = m_ownByFoldedName.find(foldedName);
    return at == m_ownByFoldedName.end() ? Node{0} : at->second;
}

const String& CapabilityTree::nameOf(Node node) const {
    if (node < m_ownNames.size()) {
        return m_ownNames[node];
    }
    const std::shared_lock lock(m_mutex);
    return m_definedNames[node - m_ownNames.size()];
}

bool CapabilityTree::define(const String& name, Node parent) {
    if (name.isEmpty() || parent == 0 || isReserved(name)) {
        return false;
    }
    String folded = foldCase(name);
    const std::unique_lock lock(m_mutex);
    if (size() >= MAXIMUM_SIZE || findOwn(folded) != 0 || m_definedByFoldedName.contains(folded)) {
        return false;
    }
    const Node node = append(parent);
    m_definedNames.push_back(name);
    enterName(m_definedByFoldedName, std::move(folded), node);
    m_hasDefined.store(true, std::memory_order_release);
    return true;
}

CapabilityTree::Node CapabilityTree::append(Node parent) {
    const std::size_t node = m_size.load(std::memory_order_relaxed);
    m_parents[node] = parent;
    m_size.store(node + 1, std::memory_order_release);
    return static_cast<Node>(node);
}

void CapabilityTree::enterName(NodesByName& nodes, String foldedName, Node node) {
    const bool isNew = nodes.try_emplace(std::move(foldedName), node).second;
    VRX_ASSERT(isNew);
}

}  // namespace vrx
