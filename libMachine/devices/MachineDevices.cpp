#include "libMachine/devices/MachineDevices.h"

#include <fmt/format.h>

#include "libMachine/record/IsoDate.h"

namespace vrx {

namespace {

constexpr std::string_view KERNEL_COPIES = "/sys/class/dmi/id";

DeviceRecord childOfRoot(StringView type, std::string hwLocator) {
    DeviceRecord device;
    device.type = type;
    device.hwLocator = std::move(hwLocator);
    device.osLocator = KERNEL_COPIES;
    device.parent = 0;
    return device;
}

DeviceRecord chassisDevice(const ChassisFacts& facts, std::string hwLocator) {
    DeviceRecord device = childOfRoot(u"Chassis", std::move(hwLocator));
    device.text(property::VENDOR, facts.vendor);
    addWord(device, property::CHASSIS_TYPE, facts.type);
    device.text(property::VERSION, facts.version);
    device.text(property::SKU, facts.sku);
    device.text(property::SERIAL_NUMBER, facts.serialNumber);
    device.text(property::ASSET_TAG, facts.assetTag);
    if (facts.height != 0) {
        device.number(property::RACK_UNITS, facts.height);
    }
    device.name = nameFromModel(device, "Chassis");
    return device;
}

DeviceRecord boardDevice(const BoardFacts& facts, std::string hwLocator) {
    DeviceRecord device = childOfRoot(u"Motherboard", std::move(hwLocator));
    device.text(property::VENDOR, facts.vendor);
    device.text(property::MODEL, facts.model);
    device.text(property::VERSION, facts.version);
    device.text(property::SERIAL_NUMBER, facts.serialNumber);
    device.text(property::ASSET_TAG, facts.assetTag);
    device.text(property::SLOT, facts.location);
    addWord(device, property::BOARD_TYPE, facts.type);
    device.name = nameFromModel(device, "Motherboard");
    return device;
}

void addIfKnown(Recording& recording, DeviceRecord device) {
    if (!device.properties.empty()) {
        recording.add(std::move(device));
    }
}

/// "board:SLOT 2", by the first of the texts that tells something, else "board".
std::string locatorBy(std::string_view kind, std::string_view text, std::string_view otherwise) {
    const std::string label = cleanName(text);
    const std::string& tag = label.empty() ? std::string(otherwise) : label;
    return tag.empty() ? std::string(kind) : fmt::format("{}:{}", kind, tag);
}

}  // namespace

DeviceRecord systemDevice(const SystemFacts& facts) {
    DeviceRecord system;
    system.type = u"System";
    system.hwLocator = "system";
    system.osLocator = "/sys/devices/system";
    system.text(property::VENDOR, facts.vendor);
    system.text(property::MODEL, facts.model);
    system.text(property::VERSION, facts.version);
    system.text(property::FAMILY, facts.family);
    system.text(property::SKU, facts.sku);
    system.text(property::SERIAL_NUMBER, facts.serialNumber);
    system.text(property::UUID, facts.uuid);
    system.name = nameFromModel(system, "System");
    return system;
}

void addChassis(Recording& recording, const ChassisFacts& facts) {
    addIfKnown(recording, chassisDevice(facts, "chassis"));
}

void addBoard(Recording& recording, const BoardFacts& facts) { addIfKnown(recording, boardDevice(facts, "board")); }

void addBios(Recording& recording, const BiosFacts& facts) {
    DeviceRecord device = childOfRoot(u"BIOS", "bios");
    device.text(property::VENDOR, facts.vendor);
    device.text(property::FIRMWARE_VERSION, facts.version);
    device.text(property::RELEASE_DATE, isoDate(facts.releaseDate));
    device.text(property::REVISION, facts.revision);
    device.text(property::CONTROLLER_REVISION, facts.controllerRevision);
    device.name = nameFromModel(device, "BIOS");
    addIfKnown(recording, std::move(device));
}

void addFurtherChassis(Recording& recording, const SmbiosFacts& facts) {
    for (std::size_t i = 1; i < facts.chassis.size(); ++i) {
        const ChassisFacts& chassis = facts.chassis[i];
        DeviceRecord device = chassisDevice(chassis, locatorBy("chassis", {}, chassis.type));
        device.osLocator = chassis.place.osLocator;
        addIfKnown(recording, std::move(device));
    }
}

void addFurtherBoards(Recording& recording, const SmbiosFacts& facts) {
    for (std::size_t i = 1; i < facts.boards.size(); ++i) {
        const BoardFacts& board = facts.boards[i];
        DeviceRecord device = boardDevice(board, locatorBy("board", board.location, board.type));
        device.osLocator = board.place.osLocator;
        addIfKnown(recording, std::move(device));
    }
}

void addWord(DeviceRecord& device, StringView key, std::string_view word) {
    if (!word.empty()) {
        device.add(key, String::UTF8Decode(word));
    }
}

}  // namespace vrx
