/// Controllers with their drives and volumes. A storage without a controller of its own, as a backplane of NVMe drives
/// is, has its drives below the machine. Simple storage is the older form of the same, and read where there is no
/// other.

#include <algorithm>

#include "libMachine/import/redfish/RedfishParts.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

namespace json = boost::json;

constexpr RedfishField DRIVE[] = {
    {"Revision", property::FIRMWARE_VERSION},
    {"CapacityBytes", property::SIZE, RedfishValue::Bytes},
    {"BlockSizeBytes", property::SECTOR_SIZE, RedfishValue::Bytes},
    {"Protocol", property::TRANSPORT},
    {"RotationSpeedRPM", property::ROTATION_RATE, RedfishValue::Measure, u"RPM"},
    {"CapableSpeedGbs", property::MAX_LINK_SPEED, RedfishValue::Measure, u"Gbit/s"},
    {"NegotiatedSpeedGbs", property::LINK_SPEED, RedfishValue::Reading, u"Gbit/s"},
};

constexpr RedfishField VOLUME[] = {
    {"CapacityBytes", property::SIZE, RedfishValue::Bytes},
    {"RAIDType", property::RAID_LEVEL},
};
constexpr RedfishKind VOLUMES{u"Volume", "volume", "Volume", "Volume, absent", VOLUME};

StringView driveType(const json::object& drive) {
    const std::string media = redfishText(drive, "MediaType");
    const std::string protocol = redfishText(drive, "Protocol");
    if (protocol == "NVMe" || (protocol == "PCIe" && media == "SSD")) {
        return u"NvmeDrive";
    }
    return media == "HDD"   ? StringView(u"HardDiskDrive")
           : media == "SSD" ? StringView(u"SolidStateDrive")
                            : StringView(u"Storage");
}

bool hasListed(const json::object& resource, std::string_view list, std::string_view word) {
    const json::value* const value = resource.if_contains(list);
    const json::array* const entries = value == nullptr ? nullptr : value->if_array();
    return entries != nullptr && std::ranges::any_of(*entries, [word](const json::value& entry) {
               return entry.is_string() && std::string_view(entry.get_string()).starts_with(word);
           });
}

StringView controllerType(const json::object& controller) {
    const auto speaks = [&](std::string_view protocol) {
        return hasListed(controller, "SupportedDeviceProtocols", protocol);
    };
    if (hasListed(controller, "SupportedRAIDTypes", "RAID")) {
        return u"RaidController";
    }
    return speaks("SAS")    ? StringView(u"SasController")
           : speaks("NVMe") ? StringView(u"NvmeController")
           : speaks("SATA") ? StringView(u"SataController")
                            : StringView(u"StorageController");
}

/// The first controller, which holds the drives; the machine where there is none.
std::size_t addControllers(RedfishParts& parts, const RedfishPart& storage, std::size_t root) {
    std::vector<RedfishPart> controllers = parts.tree().members(*storage.data, "StorageControllers");
    if (controllers.empty() && storage.data->contains("Controllers")) {
        controllers = parts.tree().members(*storage.data, "Controllers");
    }
    std::size_t first = root;
    for (std::size_t number = 0; number < controllers.size(); ++number) {
        const json::object& data = *controllers[number].data;
        const RedfishKind kind{controllerType(data), "storage", "Storage controller", "Storage controller place",
                               REDFISH_PCIE};
        const std::string id = number == 0 ? storage.id : storage.id + "/controller:" + controllers[number].id;
        const std::size_t place = parts.add(kind, {&data, id}, root);
        first = first == root && place != Recording::NONE ? place : first;
    }
    return first;
}

/// A drive on the PCI bus tells of its link by the PCI device that it is.
void addLink(RedfishParts& parts, const json::object& drive, DeviceRecord& device) {
    const json::object* const links = parts.tree().follow(drive, "Links");
    const std::vector<RedfishPart> functions =
        links == nullptr ? std::vector<RedfishPart>() : parts.tree().members(*links, "PCIeFunctions");
    const json::object* const above =
        functions.empty() ? nullptr : parts.tree().follow(*functions.front().data, "Links");
    if (const json::object* const pcie = above == nullptr ? nullptr : parts.tree().follow(*above, "PCIeDevice")) {
        addRedfishFields(device, *pcie, REDFISH_PCIE);
    }
}

void addDrives(RedfishParts& parts, const std::vector<RedfishPart>& drives, const std::string& storage,
               std::size_t above) {
    for (const RedfishPart& drive : drives) {
        const RedfishKind kind{driveType(*drive.data), "storage", "Drive", "Drive bay", DRIVE};
        const std::size_t place = parts.add(kind, {drive.data, storage + "/drive:" + drive.id}, above);
        if (place != Recording::NONE && parts.recording().at(place).type != u"Slot") {
            addLink(parts, *drive.data, parts.recording().at(place));
        }
    }
}

}  // namespace

void addRedfishStorage(RedfishParts& parts, const json::object& system, std::size_t root) {
    RedfishTree& tree = parts.tree();
    const std::vector<RedfishPart> storages = tree.members(system, "Storage");
    for (const RedfishPart& storage : storages) {
        const std::size_t above = addControllers(parts, storage, root);
        addDrives(parts, tree.members(*storage.data, "Drives"), storage.id, above);
        for (const RedfishPart& volume : tree.members(*storage.data, "Volumes")) {
            RedfishKind kind = VOLUMES;
            kind.locator = "storage";
            parts.add(kind, {volume.data, storage.id + "/volume:" + volume.id}, above);
        }
    }
    if (!storages.empty()) {
        return;
    }
    for (const RedfishPart& storage : tree.members(system, "SimpleStorage")) {
        const RedfishKind kind{u"StorageController", "storage", "Storage controller", "Storage controller place"};
        const std::size_t above = parts.add(kind, storage, root);
        if (above != Recording::NONE) {
            addDrives(parts, tree.members(*storage.data, "Devices"), storage.id, above);
        }
    }
}

}  // namespace vrx
