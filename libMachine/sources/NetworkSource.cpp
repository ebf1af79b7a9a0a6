/// Network adapters. An interface on a PCI network function makes that function the adapter: one device with the
/// function's place and names and the interface's address. Further ports of the function, and interfaces on USB or on
/// the board, are devices of their own.
///
/// Interfaces that are software (bonds, bridges, tunnels, the loopback, the ends of "veth" pairs) have no device below
/// them. They are no hardware, and left out.

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <tuple>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/linux/DiskPlace.h"
#include "libMachine/linux/DriverFirmware.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string INTERFACES = "/sys/class/net/";

/// The kind of link layer, as in the interface's file `type`.
enum LinkLayer : std::uint64_t { ETHERNET = 1, INFINIBAND = 32 };

struct Interface {
    std::string name;
    std::uint64_t linkLayer = 0;
    std::uint64_t port = 0;  ///< of a device with several

    std::string path(std::string_view file) const { return INTERFACES + name + "/" + std::string(file); }
};

std::vector<Interface> readInterfaces(const RootFolder& root) {
    std::vector<Interface> interfaces;
    for (const std::string& name : root.list(INTERFACES)) {
        Interface interface;
        interface.name = name;
        const std::optional<std::uint64_t> linkLayer = root.number(interface.path("type"));
        const bool isSoftware = root.access(interface.path("device")) == RootFolder::Access::Absent;
        if (!linkLayer || isSoftware) {
            continue;
        }
        interface.linkLayer = *linkLayer;
        interface.port = root.number(interface.path("dev_port")).value_or(0);
        interfaces.push_back(std::move(interface));
    }
    // The first port of a function is the function, whatever its interface is called.
    std::stable_sort(interfaces.begin(), interfaces.end(),
                     [](const Interface& a, const Interface& b) { return a.port < b.port; });
    return interfaces;
}

StringView typeOf(const RootFolder& root, const Interface& interface) {
    if (root.access(interface.path("phy80211")) == RootFolder::Access::Granted ||
        root.access(interface.path("wireless")) == RootFolder::Access::Granted) {
        return u"WirelessNetwork";
    }
    if (root.text(interface.path("uevent")).find("DEVTYPE=wwan") != std::string::npos) {
        return u"MobileBroadband";
    }
    switch (interface.linkLayer) {
        case ETHERNET: return u"Ethernet";
        case INFINIBAND: return u"Infiniband";
        default: return u"Network";
    }
}

/// Drivers of Infiniband have a file for their firmware's version; others have to be asked, which a saved tree cannot
/// be.
void addFirmware(DeviceRecord& device, const RootFolder& root, const Interface& interface) {
    const std::string folder = interface.path("device/infiniband/");
    for (const std::string& name : root.list(folder)) {
        if (!device.has(property::FIRMWARE_VERSION)) {
            device.text(property::FIRMWARE_VERSION, root.text(folder + name + "/fw_ver"));
        }
        if (!device.has(property::NODE_GUID)) {
            device.text(property::NODE_GUID, root.text(folder + name + "/node_guid"));
        }
    }
    if (root.isLive() && !device.has(property::FIRMWARE_VERSION)) {
        device.text(property::FIRMWARE_VERSION, driverFirmware(interface.name));
    }
}

void addProperties(DeviceRecord& device, const RootFolder& root, const Interface& interface) {
    static constexpr std::uint64_t PERMANENT = 0;
    static constexpr std::uint64_t UNKNOWN_SPEED = 0xFFFFFFFF;
    const bool keepsAddress = root.number(interface.path("addr_assign_type")) == PERMANENT;
    device.text(property::ADDRESS, root.text(interface.path("address")),
                keepsAddress ? Category::SysInfo() : Category::Volatile());
    device.text(property::LINK_STATE, root.text(interface.path("operstate")), Category::Volatile());
    device.text(property::DUPLEX, root.text(interface.path("duplex")), Category::Volatile());
    const std::uint64_t speed = root.number(interface.path("speed")).value_or(0);
    device.measure(property::SPEED, speed == UNKNOWN_SPEED ? 0 : static_cast<double>(speed), u"Mbit/s",
                   Category::Volatile());
    addFirmware(device, root, interface);
    if (!device.has(property::DRIVER)) {
        device.text(property::DRIVER, root.linkTarget(interface.path("device/driver")), Category::Internal());
    }
}

/// Whether a recorded device is a network function that an interface may make its own.
bool isNetworkFunction(const DeviceRecord& device) {
    static const CapabilityImp network(StringView(u"Network"));
    return device.hwLocator.starts_with("pci:") && network.isCapable(CapabilityImp(device.type));
}

DeviceRecord newAdapter(const CollectContext& context, const Interface& interface, const std::string& sysPath) {
    DeviceRecord device;
    device.sysPath = sysPath;
    device.hwLocator = fmt::format("{}/port:{}", locatorAbove(context.recording, sysPath), interface.port);
    const std::size_t above = context.recording.nearest(sysPath);
    device.name = above == Recording::NONE ? "Network adapter" : context.recording.at(above).name;
    return device;
}

}  // namespace

void collectNetwork(CollectContext& context) {
    context.noteAccess(INTERFACES, context.root.access(INTERFACES), {"network adapters", {u"Network"}});
    std::set<std::size_t> taken;
    for (const Interface& interface : readInterfaces(context.root)) {
        const std::string sysPath = context.root.resolved(INTERFACES + interface.name);
        std::size_t place = context.recording.nearest(sysPath);
        const bool takesFunction =
            place != Recording::NONE && isNetworkFunction(context.recording.at(place)) && taken.insert(place).second;
        if (!takesFunction) {
            place = context.recording.add(newAdapter(context, interface, sysPath));
        }
        DeviceRecord& device = context.recording.amend(place);
        device.type = typeOf(context.root, interface);
        device.osLocator = interface.name;
        addProperties(device, context.root, interface);
    }
}

}  // namespace vrx
