/// Serial ports with hardware behind them. The kernel keeps empty places for ports; one with hardware has a type. The
/// one on a serial adapter's PCI function is that function, further ones stand below it; one on the board goes by its
/// address.
///
/// Newer kernels show type and address to root only. A port that the firmware describes is there without them, and its
/// address stands in the resources that the firmware gave it; other ports are then not told from empty places.

#include <fmt/format.h>

#include <map>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string TERMINALS = "/sys/class/tty/";

/// What the kernel calls the types of chips, by number; empty for one of a single vendor's.
std::string_view chipName(std::uint64_t type) noexcept {
    static constexpr std::string_view NAMES[] = {"",        "8250",  "16450",    "16550",  "16550A", "Cirrus", "16650",
                                                 "16650V2", "16750", "Startech", "16C950", "16654",  "16850",  "RSA"};
    return type < std::size(NAMES) ? NAMES[type] : std::string_view();
}

struct SerialPort {
    std::string name;
    std::string sysPath;        ///< of the device that it belongs to
    std::uint64_t type = 0;     ///< 0 when it is not known
    std::uint64_t address = 0;  ///< on the bus of ports; 0 when it is in memory or not known
};

/// The first address of "io 0x3f8-0x3ff" in the resources of a device that the firmware describes.
std::uint64_t firstIoPort(const RootFolder& root, std::string_view sysPath) {
    static constexpr std::string_view IO = "\nio ";
    const std::string text = "\n" + root.text(std::string(sysPath) + "/resources");
    const std::size_t at = text.find(IO);
    if (at == std::string::npos) {
        return 0;
    }
    const std::size_t start = at + IO.size();
    return parseNumber(std::string_view(text).substr(start, text.find('-', start) - start)).value_or(0);
}

/// Folders below the device itself stand for the driver's own layers ("00:00:0.0").
std::string deviceFolder(const RootFolder& root, std::string path) {
    const std::string base = "/sys/devices/";
    while (path.size() > base.size() && root.linkTarget(path + "/subsystem") == "serial-base") {
        path.erase(path.rfind('/'));
    }
    return path;
}

/// Empty for a place without hardware; `isHidden` when only root may see whether it has some.
std::optional<SerialPort> readPort(const RootFolder& root, const std::string& name, bool& isHidden) {
    const std::string folder = TERMINALS + name;
    SerialPort port;
    port.name = name;
    RootFolder::Access access{};
    port.type = parseNumber(cleanName(root.bytes(folder + "/type", RootFolder::SMALL_FILE, &access))).value_or(0);
    if (access == RootFolder::Access::Absent) {
        return std::nullopt;  // a console, a pseudo terminal
    }
    port.sysPath = deviceFolder(root, root.resolved(folder + "/device"));
    if (port.sysPath.empty()) {
        return std::nullopt;
    }
    isHidden = access == RootFolder::Access::Denied;
    port.address = root.number(folder + "/port").value_or(0);
    if (port.address == 0) {
        port.address = firstIoPort(root, port.sysPath);
    }
    const bool isDescribed = port.address != 0 || port.sysPath.find("/serial8250") == std::string::npos;
    return port.type != 0 || (isHidden && isDescribed) ? std::optional(port) : std::nullopt;
}

DeviceRecord newPort(const CollectContext& context, const SerialPort& port, unsigned number) {
    const std::size_t above = context.recording.nearest(port.sysPath);
    DeviceRecord device;
    device.name = "Serial port";
    device.parent = above == Recording::NONE ? 0 : above;
    if (above != Recording::NONE) {
        device.hwLocator = fmt::format("{}/port:{}", context.recording.at(above).hwLocator, number);
    } else {
        device.hwLocator = port.address != 0 ? fmt::format("serial:{:x}", port.address)
                                             : placeOfFolder(context.recording, port.sysPath);
    }
    return device;
}

}  // namespace

void collectPorts(CollectContext& context) {
    std::map<std::size_t, unsigned> portsOf;  // how many each adapter has had so far
    bool isAnyHidden = false;
    for (const std::string& name : context.root.list(TERMINALS)) {
        bool isHidden = false;
        const std::optional<SerialPort> port = readPort(context.root, name, isHidden);
        isAnyHidden = isAnyHidden || isHidden;
        if (!port) {
            continue;
        }
        std::size_t place = context.recording.nearest(port->sysPath);
        const unsigned number = place == Recording::NONE ? 0 : portsOf[place]++;
        const bool isAdapter =
            place != Recording::NONE && number == 0 && context.recording.at(place).type == u"SerialPort";
        if (!isAdapter) {
            place = context.recording.add(newPort(context, *port, number));
        }
        DeviceRecord& device = context.recording.amend(place);
        device.type = u"SerialPort";
        device.osLocator = "/dev/" + port->name;
        if (!isAdapter) {
            device.text(property::MODEL, chipName(port->type));
        }
        if (port->address != 0) {
            device.add(property::IO_PORT, String::UTF8Decode(fmt::format("{:04x}", port->address)),
                       isAdapter ? Category::Internal() : Category::SysInfo());
        }
    }
    if (isAnyHidden) {
        context.noteAccess(TERMINALS + "*/type", RootFolder::Access::Denied, "chips of the serial ports");
    }
}

}  // namespace vrx
