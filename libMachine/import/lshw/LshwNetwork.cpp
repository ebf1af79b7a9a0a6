/// Network adapters and interfaces. An adapter on the PCI or USB bus is the device there, with what lshw knows of its
/// interface. A further port of the same function is a device below it. Interfaces that are software are no hardware
/// and left out; those that have no place for another reason stand under their name, the only one that they have.
///
/// The address of a member of a bond is that of the bond.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;

bool isSoftware(const LshwNode& node) {
    static constexpr std::string_view DRIVERS[] = {"bonding",   "bridge",      "tun",    "veth",
                                                   "dummy",     "macvlan",     "vxlan",  "team",
                                                   "wireguard", "openvswitch", "ipvlan", "802.1Q VLAN Support"};
    static constexpr std::string_view NAMES[] = {"bond", "br-",  "docker", "tap",   "tun",    "virbr",
                                                 "veth", "vnet", "wg",     "dummy", "lxc",    "lxd",
                                                 "ovs",  "vlan", "cali",   "cni",   "flannel"};
    const auto* const driver = std::find(std::begin(DRIVERS), std::end(DRIVERS), node.setting("driver"));
    const bool isNamed = std::any_of(std::begin(NAMES), std::end(NAMES),
                                     [&node](std::string_view start) { return node.logicalName().starts_with(start); });
    return driver != std::end(DRIVERS) || isNamed || node.setting("master") == "yes";
}

bool isPassedOver(const LshwNode& node) {
    return node.kind != "network" || node.logicalNames.empty() || node.logicalName() == "lo" || isSoftware(node);
}

}  // namespace

StringView lshwNetworkType(const LshwNode& node, StringView otherwise) {
    const std::string& name = node.logicalName();
    if (node.can("wireless") || !node.setting("wireless").empty() || name.starts_with("wl")) {
        return u"WirelessNetwork";
    }
    if (name.starts_with("ww")) {
        return u"MobileBroadband";
    }
    if (name.starts_with("ib") || node.description.starts_with("Infiniband")) {
        return u"Infiniband";
    }
    const bool isEthernet = node.can("ethernet") || node.description.starts_with("Ethernet");
    return isEthernet ? StringView(u"Ethernet") : otherwise;
}

void addLshwLink(DeviceRecord& adapter, const LshwNode& node) {
    static constexpr double BITS_PER_MEGABIT = 1000000;
    if (!node.logicalNames.empty()) {
        adapter.osLocator = node.logicalName();
    }
    const bool keepsAddress = node.setting("slave") != "yes";
    adapter.text(property::ADDRESS, smallLetters(lshwText(node.serial)),
                 keepsAddress ? Category::SysInfo() : Category::Volatile());
    if (!node.setting("link").empty()) {
        adapter.text(property::LINK_STATE, node.setting("link") == "yes" ? "up" : "down", Category::Volatile());
    }
    adapter.text(property::DUPLEX, node.setting("duplex"), Category::Volatile());
    adapter.measure(property::SPEED, static_cast<double>(node.size) / BITS_PER_MEGABIT, u"Mbit/s",
                    Category::Volatile());
    if (node.setting("firmware") != "N/A") {
        adapter.text(property::FIRMWARE_VERSION, node.setting("firmware"));
    }
    if (!adapter.has(property::DRIVER)) {
        adapter.text(property::DRIVER, node.setting("driver"), Category::Internal());
    }
}

std::size_t addLshwPort(LshwConversion& conversion, const LshwNode& node, std::size_t adapter, unsigned number) {
    const DeviceRecord& above = conversion.recording.at(adapter);
    DeviceRecord port;
    port.type = lshwNetworkType(node, u"Network");
    port.name = above.name;
    port.hwLocator = fmt::format("{}/port:{}", above.hwLocator, number);
    port.parent = adapter;
    addLshwLink(port, node);
    return conversion.recording.add(std::move(port));
}

std::optional<std::size_t> addLshwInterface(LshwConversion& conversion, std::size_t place) {
    const LshwNode& node = conversion.node(place);
    if (isPassedOver(node)) {
        return std::nullopt;
    }
    DeviceRecord device;
    device.type = lshwNetworkType(node, u"Network");
    device.name = fmt::format("Network interface {}", node.logicalName());
    device.hwLocator = fmt::format("net:{}", node.logicalName());
    device.parent = conversion.deviceAbove(place);
    addLshwLink(device, node);
    return conversion.recording.add(std::move(device));
}

}  // namespace vrx
