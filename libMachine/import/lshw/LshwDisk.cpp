/// Disks and their partitions. LshwDiskPlace.cpp says where a disk sits.
///
/// The speed of rotation is what the drive says of itself, or what a RAID controller makes up for all of its drives. A
/// drive that has "SSD" in its model does not rotate. What such a controller puts together is a volume. The vendor of
/// an ATA disk is made up from its model. A medium in a drive is not part of the machine, nor are the partitions on it;
/// the file system on a partition belongs to the software.

#include <fmt/format.h>

#include <algorithm>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/import/lshw/LshwDiskPlace.h"
#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;

bool isOptical(const LshwNode& node) {
    return node.isCalled("cdrom") || node.can("cd-r") || node.can("dvd") || node.logicalName().starts_with("/dev/sr");
}

bool isSolid(const LshwNode& node) {
    return node.product.find("SSD") != std::string::npos || node.can("solidstate") || node.setting("ssd") == "yes";
}

/// "7200rpm" says 7200; 0 when it says nothing, or what need not be true.
double rotationOf(const LshwNode& node, const LshwConnection& connection) {
    for (const std::string& capability : node.capabilities) {
        if (capability.ends_with("rpm") && !isSolid(node) && !connection.isRaid) {
            return leadingNumber(capability);
        }
    }
    return 0;
}

/// What a controller makes of several drives shows as one disk, of the controller's maker or with a name that says so.
bool isRaidVolume(const LshwNode& node, const LshwConnection& connection) {
    static constexpr std::string_view NAMES[] = {"logical volume", "virtual disk", "raid",    "virtualdisk",
                                                 "logicaldrv",     "perc",         "megarai", "mr9"};
    static constexpr std::string_view CONTROLLER_MAKERS[] = {"lsi",   "avago",   "broadcom", "amcc",
                                                             "3ware", "adaptec", "areca",    "intel"};
    const std::string name = smallLetters(node.product);
    const std::string maker = smallLetters(node.vendor);
    const bool isNamed = std::any_of(std::begin(NAMES), std::end(NAMES),
                                     [&name](std::string_view part) { return name.find(part) != std::string::npos; });
    const bool isOfController = std::any_of(std::begin(CONTROLLER_MAKERS), std::end(CONTROLLER_MAKERS),
                                            [&maker](std::string_view start) { return maker.starts_with(start); });
    return connection.hidesDrives && (isNamed || (connection.isRaid && isOfController));
}

StringView diskTypeOf(const LshwNode& node, const LshwConnection& connection) {
    if (isOptical(node)) {
        return u"OpticalDrive";
    }
    if (node.isCalled("floppy")) {
        return u"FloppyDrive";
    }
    if (node.kind == "tape") {
        return u"TapeDrive";
    }
    if (node.isCalled("enclosure")) {
        return u"Generic";
    }
    if (isRaidVolume(node, connection)) {
        return u"Volume";
    }
    if (connection.transport == "NVMe") {
        return u"NvmeDrive";
    }
    if (connection.transport == "MMC" && (node.can("sd") || node.description.starts_with("SD"))) {
        return u"MemoryCard";
    }
    if (connection.transport == "USB" && node.can("removable")) {
        return u"FlashDrive";
    }
    if (rotationOf(node, connection) > 0) {
        return u"HardDiskDrive";
    }
    return isSolid(node) ? StringView(u"SolidStateDrive") : StringView(u"Storage");
}

/// A disk by itself, not a medium in one, nor a target that something once answered from.
bool isDisk(const LshwNode& node) {
    const bool isKind = node.kind == "disk" || node.kind == "tape" || node.isCalled("enclosure") ||
                        (node.kind == "volume" && node.handle.starts_with("SCSI:"));
    const bool isKnown = !node.product.empty() || !node.serial.empty() || node.size > 0 || !node.logicalNames.empty();
    return isKind && isKnown && !node.isCalled("medium") && !node.busInfo.empty();
}

void addIdentity(DeviceRecord& disk, const LshwNode& node) {
    if (!node.description.starts_with("ATA ")) {
        disk.text(property::VENDOR, lshwText(node.vendor));
    }
    disk.text(property::MODEL, lshwText(node.product));
    disk.text(property::SERIAL_NUMBER, lshwText(node.serial));
    disk.text(property::FIRMWARE_VERSION, lshwText(node.version));
    const std::string_view name = node.setting("wwid");
    if (name.starts_with("naa.") || name.starts_with("eui.")) {
        disk.text(property::WWN, name);
    }
}

/// Model, serial number and firmware of an NVMe drive stand at its controller.
void addNvmeIdentity(DeviceRecord& disk, const LshwConversion& conversion, const LshwNode& node) {
    const LshwNode* const controller = node.parent == LshwNode::NONE ? nullptr : &conversion.node(node.parent);
    if (controller != nullptr && controller->isCalled("nvme") && node.product.empty()) {
        LshwNode whole = *controller;
        whole.settings = node.settings;
        addIdentity(disk, whole);
    } else {
        addIdentity(disk, node);
    }
}

void addSize(DeviceRecord& disk, const LshwNode& node) {
    const Category category = node.can("removable") ? Category::Volatile() : Category::SysInfo();
    const std::string_view logical = node.setting("logicalsectorsize");
    const std::string_view sector = logical.empty() ? node.setting("sectorsize") : logical;
    disk.size(property::SIZE, node.size > 0 ? node.size : node.capacity, category);
    disk.size(property::SECTOR_SIZE, parseNumber(sector).value_or(0), category);
}

void addKind(DeviceRecord& disk, const LshwNode& node, const LshwConnection& connection) {
    disk.text(property::TRANSPORT, connection.transport);
    disk.flag(property::REMOVABLE, node.can("removable"));
    const bool isTold = disk.type == u"HardDiskDrive" || disk.type == u"SolidStateDrive";
    if (isTold && (connection.transport == "SATA" || connection.transport == "SAS")) {
        disk.flag(property::ROTATIONAL, disk.type == u"HardDiskDrive");
    }
    disk.measure(property::ROTATION_RATE, rotationOf(node, connection), u"RPM");
}

/// The disk that a device is a part of; none when it is no part of one.
std::optional<std::size_t> diskAbove(const LshwConversion& conversion, std::size_t place) {
    std::size_t device = conversion.deviceAbove(place);
    const auto isDisk = [&conversion](std::size_t at) {
        return conversion.recording.at(at).has(property::REMOVABLE);
    };
    while (device != 0 && !isDisk(device) && conversion.recording.at(device).type == u"Volume") {
        device = conversion.recording.at(device).parent.value_or(0);
    }
    return device != 0 && isDisk(device) ? std::optional(device) : std::nullopt;
}

bool isRemovable(const LshwConversion& conversion, std::size_t place) {
    for (std::size_t at = place; at != LshwNode::NONE; at = conversion.node(at).parent) {
        if (conversion.node(at).can("removable")) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<std::size_t> addLshwDisk(LshwConversion& conversion, std::size_t place) {
    const LshwNode& node = conversion.node(place);
    if (!isDisk(node)) {
        return std::nullopt;
    }
    const LshwConnection connection = lshwConnection(conversion, place);
    DeviceRecord disk;
    disk.type = diskTypeOf(node, connection);
    disk.parent = connection.controller;
    disk.hwLocator =
        (connection.controller == 0 ? "unplaced" : conversion.recording.at(connection.controller).hwLocator) +
        connection.suffix;
    disk.osLocator = node.logicalName();
    addNvmeIdentity(disk, conversion, node);
    if (disk.type != u"Generic") {
        addSize(disk, node);
        addKind(disk, node, connection);
    }
    disk.name = nameFromModel(disk, disk.type == u"Generic" ? "Disk enclosure" : "Disk");
    return conversion.recording.add(std::move(disk));
}

std::optional<std::size_t> addLshwVolume(LshwConversion& conversion, std::size_t place) {
    const LshwNode& node = conversion.node(place);
    const std::optional<std::size_t> disk = diskAbove(conversion, place);
    if (node.kind != "volume" || !disk || isRemovable(conversion, place)) {
        return std::nullopt;
    }
    const auto number = node.logicalNames.empty() ? parseNumber(node.physId) : lshwNumberAtEnd(node.logicalName());
    if (!number) {
        return std::nullopt;
    }
    DeviceRecord volume;
    volume.type = u"Volume";
    volume.name = fmt::format("Partition {}", *number);
    volume.hwLocator = fmt::format("{}/part:{}", conversion.recording.at(*disk).hwLocator, *number);
    volume.osLocator = node.logicalName();
    volume.parent = *disk;
    volume.size(property::SIZE, node.capacity > 0 ? node.capacity : node.size);
    volume.text(property::LABEL, lshwText(node.setting("name")));
    volume.text(property::FILE_SYSTEM, node.setting("filesystem"), Category::Internal());
    return conversion.recording.add(std::move(volume));
}

}  // namespace vrx
