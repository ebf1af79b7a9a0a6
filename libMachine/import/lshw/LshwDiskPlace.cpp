/// A disk is below its controller: the nearest node above on the PCI or USB bus.
///
/// lshw hangs a disk on a host adapter ("scsi3"), a number that the kernel counts up. Behind a SATA or IDE controller
/// each port is such an adapter, so the port is the adapter's number less the first one of that controller. Adapters
/// that lshw could not place stand on the board; when the machine has just one controller that emulates them, the disks
/// are its, but for those whose adapter a USB device plays.

#include "libMachine/import/lshw/LshwDiskPlace.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

/// The numbers of "scsi@3:0.1.0": host, channel, target, unit. A partition's own number is not looked at.
std::optional<std::array<std::uint64_t, 4>> scsiAddress(const LshwNode& node) {
    std::string_view rest = LshwNode::behind(node.busInfo, "scsi@");
    rest = rest.substr(0, rest.find(','));
    std::array<std::uint64_t, 4> address{};
    for (std::uint64_t& number : address) {
        const std::size_t end = std::min(rest.find_first_of(":."), rest.size());
        const auto parsed = parseNumber(rest.substr(0, end));
        if (!parsed) {
            return std::nullopt;
        }
        number = *parsed;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return rest.empty() ? std::optional(address) : std::nullopt;
}

bool isController(const DeviceRecord& device) {
    return device.hwLocator.starts_with("pci:") || device.hwLocator.starts_with("usb:");
}

class ConnectionFinder {
public:
    ConnectionFinder(const LshwConversion& conversion, std::size_t place)
        : m_conversion(conversion), m_node(conversion.node(place)), m_place(place) {}

    LshwConnection find() const {
        LshwConnection connection;
        findController(connection);
        if (isBehindUsb(connection)) {
            connection.transport = "USB";
        } else if (connection.controller != 0) {
            findTransport(connection);
        }
        connection.suffix = suffixOf(connection);
        return connection;
    }

private:
    const DeviceRecord& device(std::size_t place) const { return m_conversion.recording.at(place); }

    void findController(LshwConnection& connection) const {
        const std::size_t above = m_conversion.deviceAbove(m_place);
        const bool isPlaced = above != 0 && isController(device(above)) && device(above).type != u"PciBridge";
        connection.controller = isPlaced ? above : scsiAddress(m_node) ? m_conversion.onlyHostController : 0;
        if (connection.controller != 0 && isBehindUsb(connection) && !isUsb(device(connection.controller))) {
            connection.controller = 0;
        }
    }

    static bool isUsb(const DeviceRecord& controller) {
        return controller.hwLocator.starts_with("usb:") || controller.type == u"UsbController";
    }

    /// Whether the host adapter that the disk hangs on is played by a USB device, wherever lshw put it.
    bool isBehindUsb(const LshwConnection& connection) const {
        for (std::size_t at = m_node.parent; at != LshwNode::NONE; at = m_conversion.node(at).parent) {
            const std::string_view driver = m_conversion.node(at).setting("driver");
            if (driver == "usb-storage" || driver == "uas" || driver.starts_with("ums-")) {
                return true;
            }
        }
        return connection.controller != 0 && device(connection.controller).hwLocator.starts_with("usb:");
    }

    void findTransport(LshwConnection& connection) const {
        const DeviceRecord& controller = device(connection.controller);
        const bool isEmulated = m_conversion.deviceAbove(m_place) != connection.controller || hasAtaDriver();
        if (m_node.busInfo.starts_with("nvme@")) {
            connection.transport = "NVMe";
        } else if (m_node.busInfo.starts_with("mmc@")) {
            connection.transport = "MMC";
        } else if (m_node.busInfo.starts_with("virtio@")) {
            connection.transport = "VirtIO";
        } else if (controller.type == u"SataController" || (controller.type == u"RaidController" && isEmulated)) {
            connection.isAta = true;
            connection.transport = "SATA";
        } else if (controller.type == u"IdeController") {
            connection.isAta = true;  // SATA as well: many controllers play the older kind
        } else if (controller.type == u"SasController") {
            connection.hidesDrives = true;
            connection.transport = "SAS";
        } else if (scsiAddress(m_node)) {
            connection.isRaid = controller.type == u"RaidController";
            connection.hidesDrives = connection.isRaid || controller.type == u"StorageController";
            connection.transport = "SCSI";
        }
    }

    const LshwNode* controllerNode() const {
        for (std::size_t at = m_node.parent; at != LshwNode::NONE; at = m_conversion.node(at).parent) {
            if (!m_conversion.node(at).busInfo.empty()) {
                return &m_conversion.node(at);
            }
        }
        return nullptr;
    }

    bool hasAtaDriver() const {
        const LshwNode* const node = controllerNode();
        return node != nullptr &&
               (node->setting("driver").starts_with("ahci") || node->setting("driver").starts_with("ata") ||
                node->setting("driver").starts_with("sata"));
    }

    /// The number of the controller's first host adapter.
    std::uint64_t firstHost() const {
        const LshwNode* const node = controllerNode();
        std::uint64_t first = static_cast<std::uint64_t>(-1);
        for (std::size_t i = 0; node != nullptr && i < node->logicalNames.size(); ++i) {
            if (const auto host = parseNumber(LshwNode::behind(node->logicalNames[i], "scsi"))) {
                first = std::min(first, *host);
            }
        }
        return first;
    }

    std::string suffixOf(const LshwConnection& connection) const {
        if (m_node.busInfo.starts_with("nvme@")) {
            return fmt::format("/ns:{}", lshwNumberAtEnd(m_node.busInfo).value_or(1));
        }
        if (m_node.busInfo.starts_with("mmc@")) {
            return fmt::format("/card:{}", m_node.busInfo.substr(m_node.busInfo.find_last_of(":@") + 1));
        }
        const auto address = scsiAddress(m_node);
        if (!address) {
            return m_node.busInfo.starts_with("virtio@") || m_node.busInfo.empty() ? "/disk" : "/" + m_node.busInfo;
        }
        const auto& [host, channel, target, unit] = *address;
        if (!connection.isAta) {
            const std::string behind = fmt::format("scsi:{}:{}:{}", channel, target, unit);
            return connection.controller != 0 ? "/" + behind : fmt::format("/host:{}/{}", host, behind);
        }
        const std::uint64_t first = firstHost();
        const std::uint64_t port = host - (first <= host ? first : 0) + 1;
        return channel == 0 && target == 0 && unit == 0 ? fmt::format("/ata:{}", port)
                                                        : fmt::format("/ata:{}/{}:{}", port, channel, target);
    }

    const LshwConversion& m_conversion;
    const LshwNode& m_node;
    std::size_t m_place;
};

}  // namespace

void findHostController(LshwConversion& conversion) {
    std::size_t count = 0;
    for (const auto& [address, function] : conversion.functions) {
        const StringView type = conversion.recording.at(function.device).type;
        if (type == u"SataController" || type == u"IdeController" || type == u"RaidController") {
            conversion.onlyHostController = ++count == 1 ? function.device : 0;
        }
    }
}

LshwConnection lshwConnection(const LshwConversion& conversion, std::size_t place) {
    return ConnectionFinder(conversion, place).find();
}

std::optional<std::uint64_t> lshwNumberAtEnd(std::string_view text) {
    return parseNumber(text.substr(text.find_last_not_of("0123456789") + 1));
}

}  // namespace vrx
