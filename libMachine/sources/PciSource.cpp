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
#include "libMachine/ids/PciClasses.h"
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
        const std::optional<std::uint64_t> classCode = root.number(function.path("class"));
        function.classCode = static_cast<std::uint32_t>(classCode.value_or(0));
        function.hasWholeClassCode = classCode.has_value();
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

/// A function of which the kernel does not show who made it is a device of its class all the same.
void noteUnread(CollectContext& context, const PciFunction& function) {
    const std::string path = function.path("vendor");
    const RootFolder::Access access = context.root.access(path);
    const LeftOut lost("what the PCI device " + function.address + " is", {pciDeviceType(function.classCode)},
                       {UnreadSource::ANY_PROPERTY});
    if (access == RootFolder::Access::Granted) {
        context.note(path, CollectNote::Reason::SaysNothing, "holds no number", lost);
    } else {
        context.noteAccess(path, access, lost);
    }
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

std::optional<std::uint64_t> linkWidth(const RootFolder& root, const std::string& path) {
    static constexpr std::uint64_t UNKNOWN = 255;
    const std::optional<std::uint64_t> width = root.number(path);
    return width && *width != 0 && *width < UNKNOWN ? width : std::nullopt;
}

/// The highest speed and width in a folder of a function.
void addHighestLink(DeviceRecord& device, const RootFolder& root, const std::string& folder, StringView speed,
                    StringView width) {
    device.measure(speed, gigatransfers(root.text(folder + "/max_link_speed")), u"GT/s");
    device.number(width, linkWidth(root, folder + "/max_link_width"));
}

/// The link as the device and the slot above it can have it, and as it is. Saving power lowers the speed, not the
/// width: one that is narrower than both allow trained so. The width of a bridge is that of whatever is behind it.
void addLink(DeviceRecord& device, const PciFunction& function, const RootFolder& root) {
    const std::string folder = DEVICES + function.address;
    addHighestLink(device, root, folder, property::MAX_LINK_SPEED, property::MAX_LINK_WIDTH);
    const std::string above = device.sysPath.substr(0, device.sysPath.find_last_of('/'));
    if (device.has(property::MAX_LINK_WIDTH) && device.type != u"PciBridge") {
        addHighestLink(device, root, above, property::SLOT_MAX_LINK_SPEED, property::SLOT_MAX_LINK_WIDTH);
    }
    device.measure(property::LINK_SPEED, gigatransfers(root.text(function.path("current_link_speed"))), u"GT/s",
                   Category::Volatile());
    device.number(property::LINK_WIDTH, linkWidth(root, function.path("current_link_width")),
                  device.type == u"PciBridge" ? Category::Volatile() : Category::SysInfo());
}

}  // namespace

void collectPci(CollectContext& context) {
    const RootFolder& root = context.root;
    context.noteAccess(
        DEVICES, context.root.access(DEVICES),
        {"PCI devices",
         {u"PciDevice", u"Bus", u"Network", u"StorageController", u"Display", u"Multimedia", u"Coprocessor"}});
    const std::vector<PciFunction> functions = readFunctions(root);
    const HardwareIds names = readNames(context, functions);
    const std::map<std::string, std::string> slots = readSlots(root);
    for (const PciFunction& function : functions) {
        if (function.vendor == 0) {
            noteUnread(context, function);
        }
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
