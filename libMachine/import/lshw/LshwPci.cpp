/// PCI functions. lshw does not write the number of a function's class, but everything that it made of it: its own
/// class, the name that it gave the node, capabilities, and for most a description that is the name of the class in
/// pci.ids. The first row of the table below that fits tells the type.
///
/// With `-numeric` the identifiers stand in brackets behind the names. A product that is the vendor's name stands for
/// one that pci.ids does not know. A controller of NVMe drives has model, serial number and firmware of its drive,
/// which are told of the drive (LshwDisk.cpp).

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;

/// What a row looks at; empty fields fit everything.
struct PciTypeRow {
    std::string_view kind;
    std::string_view name;         ///< of the node, see LshwNode::isCalled
    std::string_view capability;   ///< how it starts
    std::string_view description;  ///< how it starts
    StringView type;
};

constexpr PciTypeRow PCI_TYPES[] = {
    {"bridge", "", "pci", "", u"PciBridge"},
    {"bridge", "", "", "", u"Bus"},
    {"storage", "nvme", "", "", u"NvmeController"},
    {"storage", "", "nvm", "", u"NvmeController"},
    {"storage", "", "", "RAID bus controller", u"RaidController"},
    {"storage", "raid", "", "", u"RaidController"},
    {"storage", "", "raid", "", u"RaidController"},
    {"storage", "", "", "Non-Volatile memory controller", u"NvmeController"},
    {"storage", "sas", "", "", u"SasController"},
    {"storage", "", "sas", "", u"SasController"},
    {"storage", "", "", "Serial Attached SCSI controller", u"SasController"},
    {"storage", "sata", "", "", u"SataController"},
    {"storage", "", "ahci", "", u"SataController"},
    {"storage", "", "", "SATA controller", u"SataController"},
    {"storage", "ide", "", "", u"IdeController"},
    {"storage", "", "ide", "", u"IdeController"},
    {"storage", "", "", "", u"StorageController"},
    {"display", "", "", "", u"Display"},
    {"multimedia", "", "", "Multimedia video", u"VideoCapture"},
    {"multimedia", "", "", "Audio device", u"AudioDevice"},
    {"multimedia", "", "", "Multimedia audio", u"AudioDevice"},
    {"multimedia", "", "", "", u"Multimedia"},
    {"memory", "", "", "", u"MemoryController"},
    {"communication", "", "", "Serial controller", u"SerialPort"},
    {"communication", "", "", "Parallel controller", u"ParallelPort"},
    {"communication", "", "", "Modem", u"Modem"},
    {"input", "", "", "Keyboard", u"Keyboard"},
    {"input", "", "", "Mouse", u"PointingDevice"},
    {"input", "", "", "", u"Input"},
    {"bus", "firewire", "", "", u"FirewireController"},
    {"bus", "", "", "FireWire", u"FirewireController"},
    {"bus", "usb", "", "", u"UsbController"},
    {"bus", "", "", "USB", u"UsbController"},
    {"bus", "fiber", "", "", u"FibreChannel"},
    {"bus", "", "", "Fibre Channel", u"FibreChannel"},
    {"bus", "", "", "SMBus", u"I2cBus"},
    {"bus", "", "", "InfiniBand", u"Infiniband"},
    {"bus", "", "", "IPMI", u"ManagementController"},
    {"bus", "", "", "", u"SerialBus"},
    {"", "", "", "SD Host controller", u"StorageController"},
    {"", "", "", "RTC", u"Clock"},
    {"", "", "", "Encryption controller", u"Security"},
    {"", "", "", "Network and computing encryption", u"Security"},
    {"", "", "", "Entertainment encryption", u"Security"},
    {"", "", "", "Processing accelerators", u"Coprocessor"},
    {"", "", "", "Co-processor", u"Coprocessor"},
    {"", "", "", "IPMI", u"ManagementController"},
    {"", "", "", "Bluetooth", u"Bluetooth"},
    {"", "", "", "", u"PciDevice"},
};

bool fits(const PciTypeRow& row, const LshwNode& node) {
    return (row.kind.empty() || node.kind == row.kind) && (row.name.empty() || node.isCalled(row.name)) &&
           node.description.starts_with(row.description) &&
           (row.capability.empty() ||
            std::any_of(node.capabilities.begin(), node.capabilities.end(),
                        [&row](const std::string& capability) { return capability.starts_with(row.capability); }));
}

/// A drive that is a PCI function by itself, with a driver of its own, shows no disk.
bool isFlashCard(const LshwNode& node) {
    static constexpr std::string_view PRODUCTS[] = {"ioDrive", "ioScale", "ioMemory", "FlashMAX"};
    const bool isKind = node.kind == "memory" || node.kind == "storage" || node.kind == "generic";
    return isKind && (node.description.starts_with("FLASH memory") ||
                      std::any_of(std::begin(PRODUCTS), std::end(PRODUCTS), [&node](std::string_view product) {
                          return node.product.find(product) != std::string::npos;
                      }));
}

StringView pciTypeOf(const LshwNode& node) {
    if (node.kind == "network") {
        return lshwNetworkType(node, u"Network");
    }
    if (isFlashCard(node)) {
        return u"SolidStateDrive";
    }
    const auto* const row = std::find_if(std::begin(PCI_TYPES), std::end(PCI_TYPES),
                                         [&node](const PciTypeRow& candidate) { return fits(candidate, node); });
    const bool isSound = row->type == u"Multimedia" && node.setting("driver").starts_with("snd");
    return isSound ? StringView(u"AudioDevice") : row->type;
}

/// "0000:00:1f.2"; empty when the address on the bus is none. Old versions leave out the domain.
std::string addressOf(const LshwNode& node) {
    const std::string address = smallLetters(LshwNode::behind(node.busInfo, "pci@"));
    const bool isAddress =
        address.find_first_not_of("0123456789abcdef:.") == std::string::npos && address.find('.') != std::string::npos;
    if (!isAddress) {
        return {};
    }
    return std::count(address.begin(), address.end(), ':') == 1 ? "0000:" + address : address;
}

/// Takes hexadecimal numbers in brackets off the end of a name: "SAS3008 [1000:0097]" gives "1000:0097".
std::string takeNumbers(std::string& name, std::size_t size) {
    const std::size_t bracket = name.rfind(" [");
    if (bracket == std::string::npos || name.size() != bracket + size + 3 || !name.ends_with(']')) {
        return {};
    }
    std::string numbers = name.substr(bracket + 2, size);
    if (numbers.find_first_not_of("0123456789abcdef:") != std::string::npos) {
        return {};
    }
    name.resize(bracket);
    return numbers;
}

bool hasDriveBelow(const LshwConversion& conversion, std::size_t place) {
    const std::vector<LshwNode>& nodes = conversion.tree.nodes;
    return place + 1 < nodes.size() && nodes[place + 1].parent == place && nodes[place + 1].kind == "disk";
}

/// The words of pci.ids, where lshw does not put its own in their place.
bool hasClassName(const LshwNode& node) {
    return (node.kind != "network" || node.logicalNames.empty()) && !node.isCalled("nvme");
}

void addNames(DeviceRecord& function, const LshwNode& node, bool isDrive) {
    static constexpr std::size_t NUMBER = 4;
    std::string vendor(lshwText(node.vendor));
    std::string model(isDrive ? std::string_view() : lshwText(node.product));
    const std::string vendorNumber = takeNumbers(vendor, NUMBER);
    const std::string deviceNumbers = takeNumbers(model, 2 * NUMBER + 1);
    function.text(property::VENDOR, vendor);
    if (model != vendor) {
        function.text(property::MODEL, model);
        function.name = cleanName(model);
    }
    if (hasClassName(node)) {
        function.text(property::CLASS, node.description);
    }
    if (!vendorNumber.empty() && deviceNumbers.size() > NUMBER) {
        function.add(property::VENDOR_ID, String::UTF8Decode(vendorNumber));
        function.add(property::DEVICE_ID, String::UTF8Decode(deviceNumbers.substr(NUMBER + 1)));
    }
    if (function.name.empty()) {
        const std::string what = cleanName(node.description);
        function.name = what.empty() ? "PCI device" : what;
    }
}

}  // namespace

std::optional<std::size_t> addLshwPciFunction(LshwConversion& conversion, std::size_t place) {
    const LshwNode& node = conversion.node(place);
    const std::string address = addressOf(node);
    if (address.empty()) {
        return std::nullopt;
    }
    const auto known = conversion.functions.find(address);
    if (known != conversion.functions.end() && node.kind == "network" && !node.logicalNames.empty()) {
        return addLshwPort(conversion, node, known->second.device, ++known->second.ports);
    }
    const bool isDrive = node.isCalled("nvme") && hasDriveBelow(conversion, place);
    DeviceRecord function;
    function.type = pciTypeOf(node);
    if (function.type != u"PciDevice") {
        function.capabilities.push_back(u"PciDevice");
    }
    function.hwLocator = "pci:" + address;
    function.osLocator = "/sys/bus/pci/devices/" + address;
    function.parent = conversion.deviceAbove(place);
    addNames(function, node, isDrive);
    if (!isDrive) {
        function.text(property::REVISION, node.version);
    }
    function.text(property::SLOT, lshwText(node.slot));
    function.text(property::DRIVER, node.setting("driver"), Category::Internal());
    if (node.kind == "network") {
        addLshwLink(function, node);
    }
    const std::size_t device = conversion.recording.add(std::move(function));
    conversion.functions.emplace(address, LshwConversion::Function{device, 0});
    return device;
}

}  // namespace vrx
