/// PCI functions, as a tree below their bridges. Identifiers come from sysfs, their names from pci.ids, the name of the
/// slot from the kernel's list of slots.
///
/// A function's type follows from its class. A network function becomes the network adapter itself when an interface
/// is found on it (NetworkSource.cpp), a storage controller the parent of its disks (StorageSource.cpp).

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/ids/HardwareIds.h"
#include "libMachine/ids/PciIdentity.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string DEVICES = "/sys/bus/pci/devices/";
const std::string SLOTS = "/sys/bus/pci/slots/";

/// One function as sysfs shows it.
struct PciFunction : PciIdentity {
    std::string address;  ///< "0000:00:1f.2"

    std::string path(std::string_view file) const { return DEVICES + address + "/" + std::string(file); }
};

std::uint32_t numberIn(const RootFolder& root, const std::string& path) {
    return static_cast<std::uint32_t>(root.number(path).value_or(0));
}

std::vector<PciFunction> readFunctions(const RootFolder& root) {
    std::vector<std::string> addresses = root.list(DEVICES);
    // Digits of an address are hexadecimal and of fixed width, but for domains of more than four.
    std::sort(addresses.begin(), addresses.end(), [](const std::string& a, const std::string& b) {
        return std::pair(a.size(), std::string_view(a)) < std::pair(b.size(), std::string_view(b));
    });
    std::vector<PciFunction> functions;
    for (std::string& address : addresses) {
        PciFunction function;
        function.address = std::move(address);
        function.vendor = numberIn(root, function.path("vendor"));
        if (function.vendor == 0) {
            continue;  // nothing there to be read
        }
        function.classCode = numberIn(root, function.path("class"));
        function.device = numberIn(root, function.path("device"));
        function.subVendor = numberIn(root, function.path("subsystem_vendor"));
        function.subDevice = numberIn(root, function.path("subsystem_device"));
        functions.push_back(std::move(function));
    }
    return functions;
}

HardwareIds readNames(CollectContext& context, const std::vector<PciFunction>& functions) {
    HardwareIds names;
    for (const PciFunction& function : functions) {
        wantPciNames(names, function);
    }
    if (!functions.empty() && !names.load(context.root, "pci.ids")) {
        context.noteAccess("/usr/share/misc/pci.ids", RootFolder::Access::Absent,
                           "names of PCI vendors, devices and classes");
    }
    return names;
}

/// Slot names by the address of bus and device that they stand for ("0000:03:00").
std::map<std::string, std::string> readSlots(const RootFolder& root) {
    std::map<std::string, std::string> slots;
    for (const std::string& name : root.list(SLOTS)) {
        slots.emplace(root.text(SLOTS + name + "/address"), name);
    }
    return slots;
}

/// "8.0 GT/s PCIe" says 8.
double gigatransfers(std::string_view text) {
    return text.find(" GT/s") == std::string_view::npos ? 0 : leadingNumber(text);
}

/// The link as it can be, and as it is at the moment: saving power slows it down and narrows it.
void addLink(DeviceRecord& device, const PciFunction& function, const RootFolder& root) {
    static constexpr std::uint64_t UNKNOWN_WIDTH = 255;
    const auto addWidth = [&](StringView key, std::string_view file, Category category) {
        const std::optional<std::uint64_t> width = root.number(function.path(file));
        if (width && *width != 0 && *width < UNKNOWN_WIDTH) {
            device.number(key, width, category);
        }
    };
    device.measure(property::MAX_LINK_SPEED, gigatransfers(root.text(function.path("max_link_speed"))), u"GT/s");
    addWidth(property::MAX_LINK_WIDTH, "max_link_width", Category::SysInfo());
    device.measure(property::LINK_SPEED, gigatransfers(root.text(function.path("current_link_speed"))), u"GT/s",
                   Category::Volatile());
    addWidth(property::LINK_WIDTH, "current_link_width", Category::Volatile());
}

}  // namespace

void collectPci(CollectContext& context) {
    const RootFolder& root = context.root;
    context.noteAccess(DEVICES, context.root.access(DEVICES), "PCI devices");
    const std::vector<PciFunction> functions = readFunctions(root);
    const HardwareIds names = readNames(context, functions);
    const std::map<std::string, std::string> slots = readSlots(root);
    for (const PciFunction& function : functions) {
        DeviceRecord device = pciFunctionDevice(function.address, function, names);
        device.sysPath = root.resolved(device.osLocator);
        if (const auto revision = root.number(function.path("revision"))) {
            device.add(property::REVISION, String::UTF8Decode(fmt::format("{:02x}", *revision)));
        }
        const auto slot = slots.find(function.address.substr(0, function.address.rfind('.')));
        if (slot != slots.end()) {
            device.text(property::SLOT, slot->second);
        }
        addLink(device, function, root);
        device.text(property::DRIVER, root.linkTarget(function.path("driver")), Category::Internal());
        device.number(property::NUMA_NODE, root.number(function.path("numa_node")), Category::Internal());
        context.recording.add(std::move(device));
    }
}

}  // namespace vrx
