/// A disk's folder in sysfs shows the way to it: controller, port, target, unit. The numbers that the kernel counts up
/// as it finds things (host3, ata5, nvme0) are not stable; ports, addresses on a bus and namespaces are:
///
///     NVMe    .../0000:01:00.0/nvme/nvme0/nvme0n1                          controller/ns:1
///     ATA     .../0000:00:17.0/ata5/host4/target4:0:0/4:0:0:0/block/sda    controller/ata:PORT
///             behind a multiplier                                          controller/ata:PORT/CHANNEL:TARGET
///     SAS     .../end_device-0:3/target0:0:3/0:0:3:0/block/sda             controller/bay:N, else controller/phy:N
///     SCSI    .../host0/target0:1:2/0:1:2:0/block/sda                      controller/scsi:CHANNEL:TARGET:UNIT
///     MMC     .../mmc_host/mmc0/mmc0:0001/block/mmcblk0                    controller/card:0001
///     others  .../virtio1/block/vda                                        controller/disk

#include "libMachine/linux/DiskPlace.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "libMachine/linux/DevicePlace.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/Recording.h"

namespace vrx {

namespace {

constexpr std::string_view VIRTUAL = "/sys/devices/virtual/";
constexpr std::string_view SUBSYSTEMS = "/sys/devices/virtual/nvme-subsystem/";

/// The path up to and with its first name that starts so and goes on with a digit; empty when there is none.
std::string_view upToNumbered(std::string_view path, std::string_view start) noexcept {
    const std::string_view digits = "0123456789";
    for (std::size_t at = path.find(start); at != std::string_view::npos; at = path.find(start, at + 1)) {
        const std::size_t behind = at + start.size();
        if (path[at - 1] == '/' && behind < path.size() && digits.find(path[behind]) != std::string_view::npos) {
            return path.substr(0, path.find('/', behind));
        }
    }
    return {};
}

/// With several ways to a namespace the kernel keeps its disk in a folder of the subsystem. The first way that is a
/// device of this machine is where it sits.
std::string throughController(const RootFolder& root, const std::string& path) {
    const std::string subsystem = path.substr(0, path.rfind('/'));
    for (const std::string& name : root.list(subsystem)) {
        const bool isWay = !upToNumbered("/" + name, "nvme").empty();
        std::string controller = isWay ? root.resolved(subsystem + "/" + name) : std::string();
        if (!controller.empty() && !controller.starts_with(VIRTUAL)) {
            return controller.append(path, path.rfind('/'));
        }
    }
    return {};
}

std::string folderOf(const RootFolder& root, const std::string& name) {
    const std::string path = root.resolved("/sys/block/" + name);
    if (path.starts_with(SUBSYSTEMS)) {
        return throughController(root, path);
    }
    return path.starts_with(VIRTUAL) ? std::string() : path;
}

/// "0:1:2:3" (host, channel, target, unit), the name of a SCSI disk's device folder; empty for other disks.
std::string scsiAddress(std::string_view path) {
    const std::string_view device = lastName(path.substr(0, path.rfind("/block/")));
    const bool isAddress = device.find_first_not_of("0123456789:") == std::string_view::npos &&
                           std::count(device.begin(), device.end(), ':') == 3;
    return isAddress ? std::string(device) : std::string();
}

/// Channel, target and unit: what is behind the number of the host.
std::string withoutHost(const std::string& address) { return address.substr(address.find(':') + 1); }

/// The folders between a controller and a disk.
struct WayToDisk {
    const RootFolder& root;
    std::string_view path;
    const std::string& name;
    std::string address;  ///< on SCSI; empty for disks that are not

    /// How the disk is reached; empty when the way does not show it.
    std::string_view transport() const {
        static constexpr std::pair<std::string_view, std::string_view> FOLDERS[] = {
            {"end_device-", "SAS"}, {"usb", "USB"},       {"nvme", "NVMe"},           {"mmc", "MMC"},
            {"virtio", "VirtIO"},   {"session", "iSCSI"}, {"rport-", "Fibre Channel"}};
        if (const auto port = upToNumbered(path, "ata"); !port.empty()) {
            return isSerialAta(port) ? "SATA" : "ATA";
        }
        for (const auto& [folder, transport] : FOLDERS) {
            if (!upToNumbered(path, folder).empty()) {
                return transport;
            }
        }
        return address.empty() ? std::string_view() : "SCSI";
    }

    /// What is behind the controller's locator.
    std::string suffix() const {
        if (const auto endDevice = upToNumbered(path, "end_device-"); !endDevice.empty()) {
            return sasSuffix(endDevice);
        }
        if (const auto port = upToNumbered(path, "ata"); !port.empty()) {
            return ataSuffix(port);
        }
        if (!upToNumbered(path, "nvme").empty()) {
            return "/ns:" + root.text("/sys/block/" + name + "/nsid");
        }
        if (!upToNumbered(path, "mmc").empty()) {
            const std::string_view card = lastName(path.substr(0, path.rfind("/block/")));
            return fmt::format("/card:{}", card.substr(card.find(':') + 1));
        }
        return address.empty() ? "/disk" : "/scsi:" + withoutHost(address);
    }

private:
    bool isSerialAta(std::string_view port) const {
        const std::string_view number = lastName(port).substr(3);
        const std::string speed = root.text(fmt::format("{0}/link{1}/ata_link/link{1}/sata_spd", port, number));
        return !speed.empty() && speed.front() != '<';
    }

    std::string ataSuffix(std::string_view port) const {
        const std::string number = root.text(fmt::format("{}/ata_port/{}/port_no", port, lastName(port)));
        const std::string behind = withoutHost(address);
        const std::string device = behind == "0:0:0" ? std::string() : "/" + behind.substr(0, behind.rfind(':'));
        return fmt::format("/ata:{}{}", number.empty() ? lastName(port).substr(3) : number, device);
    }

    std::string sasSuffix(std::string_view endDevice) const {
        const std::string folder = fmt::format("{}/sas_device/{}/", endDevice, lastName(endDevice));
        for (const auto& [file, label] : {std::pair("bay_identifier", "bay"), std::pair("phy_identifier", "phy")}) {
            if (const auto number = root.number(folder + file)) {
                return fmt::format("/{}:{}", label, *number);
            }
        }
        return "/scsi:" + withoutHost(address);
    }
};

}  // namespace

std::string locatorAbove(const Recording& recording, std::string_view sysPath) {
    return placeOfFolder(recording, sysPath.substr(0, sysPath.rfind('/')));
}

DiskPlace placeOfDisk(const RootFolder& root, const Recording& recording, const std::string& name) {
    DiskPlace place;
    place.sysPath = folderOf(root, name);
    if (!place.sysPath.empty()) {
        const WayToDisk way{root, place.sysPath, name, scsiAddress(place.sysPath)};
        place.transport = way.transport();
        place.hwLocator = locatorAbove(recording, place.sysPath) + way.suffix();
    }
    return place;
}

}  // namespace vrx
