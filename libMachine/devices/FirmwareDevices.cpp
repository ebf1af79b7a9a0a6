#include "libMachine/devices/FirmwareDevices.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <set>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/linux/PciPlaces.h"
#include "libMachine/record/CleanText.h"

namespace vrx {

namespace {

/// A device by the first of the labels that tells something, else by its number in the table.
DeviceRecord labelledDevice(StringView type, std::string_view kind, const SmbiosPlace& place, std::string_view label) {
    const std::string clean = cleanName(label);
    DeviceRecord device;
    device.type = type;
    device.hwLocator = fmt::format("{}:{}", kind, clean.empty() ? std::to_string(place.instance) : clean);
    device.osLocator = place.osLocator;
    device.parent = 0;
    return device;
}

void addSlotDevice(Recording& recording, const ExpansionSlotFacts& slot) {
    DeviceRecord device = labelledDevice(u"Slot", "slot", slot.place, slot.designation);
    device.name = "Expansion slot";
    device.text(property::SLOT, slot.designation);
    addWord(device, property::SLOT_TYPE, slot.type);
    addWord(device, property::SLOT_LENGTH, slot.length);
    addWord(device, property::USAGE, slot.usage);
    recording.add(std::move(device));
}

/// The list of types has none for USB controllers; what they are called tells.
StringView onboardDeviceType(std::string_view name, std::string_view designation) noexcept {
    struct Kind {
        std::string_view name;
        StringView type;
    };
    static constexpr Kind KINDS[] = {
        {"Video", u"Display"},
        {"SCSI Controller", u"StorageController"},
        {"Ethernet", u"Ethernet"},
        {"Token Ring", u"Network"},
        {"Sound", u"AudioDevice"},
        {"PATA Controller", u"IdeController"},
        {"SATA Controller", u"SataController"},
        {"SAS Controller", u"SasController"},
        {"Wireless LAN", u"WirelessNetwork"},
        {"Bluetooth", u"Bluetooth"},
        {"WWAN", u"MobileBroadband"},
        {"eMMC", u"StorageController"},
        {"NVMe Controller", u"NvmeController"},
        {"UFS Controller", u"StorageController"},
    };
    const auto kind =
        std::find_if(std::begin(KINDS), std::end(KINDS), [name](const Kind& known) { return known.name == name; });
    if (kind != std::end(KINDS)) {
        return kind->type;
    }
    return designation.find("USB") == std::string_view::npos ? StringView(u"PciDevice") : u"UsbController";
}

/// Whether the name of a power supply is that of its bay ("PSU 2", "Power Supply 1") and not that of a product.
bool isBayName(std::string_view name) {
    static constexpr std::string_view WORDS[] = {"psu", "ps", "power supply", "power supply unit", "power unit", "pwr"};
    const std::size_t end = name.find_last_not_of("0123456789") + 1;
    if (end == name.size() || end == 0) {
        return false;
    }
    const std::string word = smallLetters(name.substr(0, name.find_last_not_of(" #_-", end - 1) + 1));
    return std::find(std::begin(WORDS), std::end(WORDS), word) != std::end(WORDS);
}

void fillPowerSupply(DeviceRecord& device, const PowerSupplyFacts& supply, bool isNameOfBay) {
    device.text(property::VENDOR, supply.vendor);
    if (!isNameOfBay) {
        device.text(property::MODEL, supply.name);
    }
    device.text(property::PART_NUMBER, supply.partNumber);
    device.text(property::REVISION, supply.revision);
    device.text(property::SERIAL_NUMBER, supply.serialNumber);
    device.text(property::ASSET_TAG, supply.assetTag);
    device.measure(property::MAX_POWER, supply.maxPower, u"W");
    const std::string byPart = nameFromModel(device, "Power supply", property::PART_NUMBER);
    device.name = nameFromModel(device, byPart);
}

/// Of the devices that are switched on.
std::set<std::string_view> onboardAddresses(const SmbiosFacts& facts) {
    std::set<std::string_view> addresses;
    for (const OnboardDeviceFacts& onboard : facts.onboardDevices) {
        if (onboard.isEnabled && !onboard.busAddress.empty()) {
            addresses.insert(onboard.busAddress);
        }
    }
    return addresses;
}

DeviceRecord onboardDevice(const OnboardDeviceFacts& onboard) {
    const bool isOnBus = !onboard.busAddress.empty();
    const StringView type = onboardDeviceType(onboard.type, onboard.designation);
    DeviceRecord device = labelledDevice(isOnBus || type != u"PciDevice" ? type : u"Generic", "onboard", onboard.place,
                                         onboard.designation);
    if (isOnBus) {
        device.hwLocator = "pci:" + onboard.busAddress;
        device.osLocator = "/sys/bus/pci/devices/" + onboard.busAddress;
        if (device.type != u"PciDevice") {
            device.capabilities.push_back(u"PciDevice");
        }
    }
    const std::string label = cleanName(onboard.designation);
    device.name = label.empty() ? "On-board device" : label;
    device.text(property::LABEL, onboard.designation);
    return device;
}

StringView coolingDeviceType(std::string_view type) noexcept {
    return type.find("Fan") != std::string_view::npos || type == "Centrifugal Blower" ? StringView(u"Fan")
                                                                                      : StringView(u"Cooling");
}

}  // namespace

void addExpansionSlots(Recording& recording, const SmbiosFacts& facts) {
    const PciPlaces functions(recording);
    const std::set<std::string_view> onboard = onboardAddresses(facts);
    std::vector<const ExpansionSlotFacts*> others;
    for (const ExpansionSlotFacts& slot : facts.slots) {
        const bool isUsed = slot.usage == "In Use" && !slot.busAddress.empty() && !onboard.contains(slot.busAddress);
        const std::vector<std::size_t> holds = isUsed ? functions.inSlot(slot.busAddress) : std::vector<std::size_t>();
        for (const std::size_t place : holds) {
            if (!recording.at(place).has(property::SLOT)) {
                recording.amend(place).text(property::SLOT, slot.designation);
            }
        }
        if (holds.empty()) {
            others.push_back(&slot);
        }
    }
    for (const ExpansionSlotFacts* const slot : others) {
        addSlotDevice(recording, *slot);
    }
}

void labelOnboardDevices(Recording& recording, const SmbiosFacts& facts) {
    const PciPlaces functions(recording);
    for (const OnboardDeviceFacts& onboard : facts.onboardDevices) {
        const std::size_t place = functions.function(onboard.busAddress);
        if (place != Recording::NONE && !recording.at(place).has(property::LABEL)) {
            recording.amend(place).text(property::LABEL, onboard.designation);
        }
    }
}

void addOnboardDevices(Recording& recording, const SmbiosFacts& facts) {
    const bool hasAddresses = !onboardAddresses(facts).empty();
    for (const OnboardDeviceFacts& onboard : facts.onboardDevices) {
        if (onboard.isEnabled && (!onboard.busAddress.empty() || !hasAddresses)) {
            recording.add(onboardDevice(onboard));
        }
    }
}

void addPowerSupplies(Recording& recording, const SmbiosFacts& facts) {
    for (const PowerSupplyFacts& supply : facts.powerSupplies) {
        const bool isNameOfBay = cleanName(supply.location).empty() && isBayName(cleanName(supply.name));
        const std::string& bay = isNameOfBay ? supply.name : supply.location;
        const StringView type = supply.isPresent ? StringView(u"PowerSupply") : u"Slot";
        DeviceRecord device = labelledDevice(type, "psu", supply.place, bay);
        device.text(property::SLOT, bay);
        if (supply.isPresent) {
            fillPowerSupply(device, supply, isNameOfBay);
        } else {
            device.name = "Power supply bay";
        }
        recording.add(std::move(device));
    }
}

void addBatteries(Recording& recording, const SmbiosFacts& facts) {
    static constexpr double MILLI = 1000;
    for (const PortableBatteryFacts& battery : facts.batteries) {
        DeviceRecord device = labelledDevice(u"Battery", "battery", battery.place, battery.location);
        device.text(property::SLOT, battery.location);
        device.text(property::VENDOR, battery.vendor);
        device.text(property::MODEL, battery.name);
        device.text(property::SERIAL_NUMBER, battery.serialNumber);
        device.text(property::TECHNOLOGY, battery.chemistry);
        device.measure(property::DESIGN_CAPACITY, battery.designCapacity / MILLI, u"Wh");
        device.measure(property::DESIGN_VOLTAGE, battery.designVoltage, u"V");
        device.name = nameFromModel(device, "Battery");
        recording.add(std::move(device));
    }
}

void addCoolingDevices(Recording& recording, const SmbiosFacts& facts) {
    for (const CoolingDeviceFacts& cooling : facts.coolingDevices) {
        const std::string description = cleanName(cooling.description);
        if (description.empty()) {
            continue;  // an entry that was left as the firmware's maker delivered it
        }
        DeviceRecord device = labelledDevice(coolingDeviceType(cooling.type), "fan", cooling.place, description);
        device.name = description;
        addWord(device, property::COOLING_TYPE, cooling.type);
        device.measure(property::NOMINAL_SPEED, cooling.nominalSpeed, u"RPM");
        recording.add(std::move(device));
    }
}

void addManagementController(Recording& recording, const SmbiosFacts& facts) {
    if (!facts.managementController) {
        return;
    }
    DeviceRecord device;
    device.type = u"ManagementController";
    device.name = "Management controller";
    device.hwLocator = "bmc";
    device.osLocator = facts.managementController->place.osLocator;
    device.parent = 0;
    addWord(device, property::INTERFACE_TYPE, facts.managementController->interfaceType);
    addWord(device, property::IPMI_VERSION, facts.managementController->version);
    recording.add(std::move(device));
}

void addTrustedPlatform(Recording& recording, const SmbiosFacts& facts) {
    if (!facts.trustedPlatform) {
        return;
    }
    const TrustedPlatformFacts& tpm = *facts.trustedPlatform;
    DeviceRecord device;
    device.type = u"TrustedPlatformModule";
    device.name = "Trusted platform module";
    device.hwLocator = "tpm";
    device.osLocator = tpm.place.osLocator;
    device.parent = 0;
    device.text(property::VENDOR, tpm.vendor);
    device.text(property::MODEL, tpm.description);
    device.text(property::VERSION, tpm.version);
    device.text(property::FIRMWARE_VERSION, tpm.firmwareVersion);
    recording.add(std::move(device));
}

}  // namespace vrx
