/// Disks, each below its controller or USB device (DiskPlace.cpp says where it sits). Disks that are software (loop,
/// device mapper, RAID sets, compressed memory) are not recorded.
///
/// Whether a disk rotates is told where the disk itself says so (SATA, SAS); behind other transports the kernel's flag
/// is a default. The size of a medium that can be taken out is Volatile.

#include <algorithm>
#include <iterator>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/ids/VpdPages.h"
#include "libMachine/linux/DiskPlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;

/// Names of what is no disk of its own; a saved tree without links does not show it otherwise.
bool isSoftwareOrPart(std::string_view name) noexcept {
    static constexpr std::string_view STARTS[] = {"loop", "ram", "zram", "dm-", "md", "nbd", "rbd", "drbd", "bcache"};
    const bool isMmcPart = name.starts_with("mmcblk") &&
                           (name.find("boot") != std::string_view::npos || name.find("rpmb") != std::string_view::npos);
    return isMmcPart || std::any_of(std::begin(STARTS), std::end(STARTS),
                                    [name](std::string_view start) { return name.starts_with(start); });
}

/// Reads one disk.
class DiskReader {
public:
    DiskReader(const RootFolder& root, const std::string& name, DiskPlace place)
        : m_root(root), m_name(name), m_folder("/sys/block/" + name + "/"), m_place(std::move(place)) {}

    DeviceRecord read() const {
        DeviceRecord disk;
        disk.type = typeOfDisk();
        disk.hwLocator = m_place.hwLocator;
        disk.osLocator = "/dev/" + m_name;
        disk.sysPath = m_place.sysPath;
        addIdentity(disk);
        addSize(disk);
        disk.text(property::TRANSPORT, m_place.transport);
        disk.flag(property::REMOVABLE, isRemovable());
        if (saysWhetherItRotates()) {
            disk.flag(property::ROTATIONAL, isRotational());
        }
        disk.measure(property::ROTATION_RATE, vpdRotationRate(page("b1")), u"RPM");
        disk.text(property::RAID_LEVEL, text("device/raid_level"));
        if (m_place.transport == "MMC") {
            addCardIdentity(disk);
        }
        disk.name = nameFromModel(disk, "Disk");
        return disk;
    }

private:
    std::string text(std::string_view file) const { return m_root.text(m_folder + std::string(file)); }
    std::string page(std::string_view number) const {
        return m_root.bytes(m_folder + "device/vpd_pg" + std::string(number));
    }
    bool isRemovable() const { return text("removable") == "1"; }
    bool isRotational() const { return text("queue/rotational") == "1"; }
    bool saysWhetherItRotates() const {
        return (m_place.transport == "SATA" || m_place.transport == "SAS") && !m_name.starts_with("sr");
    }

    StringView typeOfDisk() const {
        if (m_name.starts_with("sr")) {
            return u"OpticalDrive";
        }
        if (m_name.starts_with("fd")) {
            return u"FloppyDrive";
        }
        if (m_place.transport == "NVMe") {
            return u"NvmeDrive";
        }
        if (m_place.transport == "MMC" && text("device/type") == "SD") {
            return u"MemoryCard";
        }
        if (m_place.transport == "USB" && isRemovable()) {
            return u"FlashDrive";
        }
        if (saysWhetherItRotates()) {
            return isRotational() ? StringView(u"HardDiskDrive") : StringView(u"SolidStateDrive");
        }
        return u"Storage";
    }

    /// What the disk says of itself; drivers differ in where they keep it, so the first place that has it counts.
    void addIdentity(DeviceRecord& disk) const {
        const AtaIdentity ata = vpdAtaIdentity(page("89"));
        const std::string vendor = text("device/vendor");
        if (vendor != "ATA" && !vendor.starts_with("0x")) {
            disk.text(property::VENDOR, vendor);
        }
        addFirst(disk, property::MODEL, {ata.model, text("device/model"), text("device/name")});
        addFirst(disk, property::SERIAL_NUMBER,
                 {ata.serialNumber, vpdSerialNumber(page("80")), text("device/serial"), text("serial")});
        addFirst(disk, property::FIRMWARE_VERSION,
                 {ata.firmwareVersion, text("device/firmware_rev"), text("device/rev"), text("device/fwrev")});
        addWwn(disk);
    }

    static void addFirst(DeviceRecord& disk, StringView key, std::initializer_list<std::string_view> values) {
        for (const std::string_view value : values) {
            if (!disk.has(key)) {
                disk.text(key, value);
            }
        }
    }

    /// "0x00001b" is the maker of a card, "03/2021" when it was made.
    void addCardIdentity(DeviceRecord& disk) const {
        disk.text(property::VENDOR_ID, text("device/manfid"));
        const std::string date = text("device/date");
        if (const std::size_t slash = date.find('/'); slash != std::string::npos) {
            disk.text(property::MANUFACTURE_DATE, date.substr(slash + 1) + "-" + date.substr(0, slash));
        }
    }

    /// Only names that are unique in the world: the kernel makes others up from model and serial number.
    void addWwn(DeviceRecord& disk) const {
        const std::string scsi = text("device/wwid");
        const std::string name = scsi.empty() ? text("wwid") : scsi;
        if (name.starts_with("naa.") || name.starts_with("eui.")) {
            disk.text(property::WWN, name);
        }
    }

    void addSize(DeviceRecord& disk) const {
        static constexpr std::uint64_t SECTOR = 512;  // the kernel counts in these, whatever the disk has
        const Category category = isRemovable() ? Category::Volatile() : Category::SysInfo();
        disk.size(property::SIZE, m_root.number(m_folder + "size").value_or(0) * SECTOR, category);
        disk.size(property::SECTOR_SIZE, m_root.number(m_folder + "queue/logical_block_size").value_or(0), category);
    }

    const RootFolder& m_root;
    const std::string& m_name;
    std::string m_folder;
    DiskPlace m_place;
};

/// An NVMe drive is its controller, so the link of that one is the drive's.
void addLinkOfController(DeviceRecord& disk, const Recording& recording) {
    static constexpr StringView KEYS[] = {property::MAX_LINK_SPEED,      property::MAX_LINK_WIDTH,
                                          property::SLOT_MAX_LINK_SPEED, property::SLOT_MAX_LINK_WIDTH,
                                          property::LINK_SPEED,          property::LINK_WIDTH};
    const std::size_t controller = recording.nearest(disk.sysPath);
    if (disk.type != u"NvmeDrive" || controller == Recording::NONE) {
        return;
    }
    for (const PropertyRecord& property : recording.at(controller).properties) {
        if (std::find(std::begin(KEYS), std::end(KEYS), property.key) != std::end(KEYS)) {
            disk.properties.push_back(property);
        }
    }
}

}  // namespace

void collectStorage(CollectContext& context) {
    static const std::string FOLDER = "/sys/block/";
    context.noteAccess(FOLDER, context.root.access(FOLDER), {"disks", {u"Storage"}});
    for (const std::string& name : context.root.list(FOLDER)) {
        if (isSoftwareOrPart(name) || context.root.text(FOLDER + name + "/hidden") == "1") {
            continue;
        }
        DiskPlace place = placeOfDisk(context.root, context.recording, name);
        if (!place.sysPath.empty()) {
            DeviceRecord disk = DiskReader(context.root, name, std::move(place)).read();
            addLinkOfController(disk, context.recording);
            context.recording.add(std::move(disk));
        }
    }
}

}  // namespace vrx
