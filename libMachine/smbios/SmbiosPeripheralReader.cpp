/// Slots, on-board devices, power supplies, batteries, cooling devices and management parts out of an SMBIOS table.

#include <fmt/format.h>

#include "libMachine/smbios/SmbiosNames.h"
#include "libMachine/smbios/SmbiosReaders.h"

namespace vrx {

namespace {

constexpr unsigned UNKNOWN_NUMBER = 0x8000;

/// "0000:3b:00.0" from a domain of two bytes, a bus, and device and function in one; empty when there is none.
std::string busAddress(const SmbiosStructure& structure, std::size_t offset) {
    const unsigned domain = structure.word(offset);
    const unsigned bus = structure.byte(offset + 2);
    const unsigned function = structure.byte(offset + 3);
    const bool isNone = domain == 0xFFFF || (bus == 0xFF && function == 0xFF);
    return !structure.has(offset, 4) || isNone
               ? std::string()
               : fmt::format("{:04x}:{:02x}:{:02x}.{}", domain, bus, function >> 3, function & 7);
}

unsigned knownWord(const SmbiosStructure& structure, std::size_t offset) {
    const unsigned number = structure.word(offset);
    return number == UNKNOWN_NUMBER ? 0 : number;
}

/// What a smart battery says of itself stands behind what the firmware says.
void readSmartBattery(const SmbiosStructure& structure, PortableBatteryFacts& battery) {
    if (battery.serialNumber.empty() && structure.word(0x10) != 0) {
        battery.serialNumber = fmt::format("{:04X}", structure.word(0x10));
    }
    if (battery.chemistry.empty()) {
        battery.chemistry = structure.text(0x14);
    }
    if (const unsigned multiplier = structure.byte(0x15); multiplier != 0) {
        battery.designCapacity *= multiplier;
    }
}

}  // namespace

void readExpansionSlot(const SmbiosStructure& structure, SmbiosFacts& facts) {
    ExpansionSlotFacts& slot = facts.slots.emplace_back();
    slot.place = placeOf(structure);
    slot.designation = structure.text(0x04);
    slot.type = slotTypeName(structure.byte(0x05), structure.byte(0x06));
    slot.usage = slotUsageName(structure.byte(0x07));
    slot.length = slotLengthName(structure.byte(0x08));
    slot.busAddress = busAddress(structure, 0x0D);
}

void readOnboardDevice(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned ENABLED = 0x80;
    OnboardDeviceFacts& device = facts.onboardDevices.emplace_back();
    device.place = placeOf(structure);
    device.designation = structure.text(0x04);
    device.type = onboardDeviceName(structure.byte(0x05) & ~ENABLED);
    device.isEnabled = (structure.byte(0x05) & ENABLED) != 0;
    device.busAddress = busAddress(structure, 0x07);
}

void readPowerSupply(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned PRESENT = 0x02;
    PowerSupplyFacts& supply = facts.powerSupplies.emplace_back();
    supply.place = placeOf(structure);
    supply.location = structure.text(0x05);
    supply.name = structure.text(0x06);
    supply.vendor = structure.text(0x07);
    supply.serialNumber = structure.text(0x08);
    supply.assetTag = structure.text(0x09);
    supply.partNumber = structure.text(0x0A);
    supply.revision = structure.text(0x0B);
    supply.maxPower = knownWord(structure, 0x0C);
    supply.isPresent = !structure.has(0x0E, 2) || (structure.word(0x0E) & PRESENT) != 0;
}

void readPortableBattery(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr double MILLIVOLTS = 1000;
    PortableBatteryFacts& battery = facts.batteries.emplace_back();
    battery.place = placeOf(structure);
    battery.location = structure.text(0x04);
    battery.vendor = structure.text(0x05);
    battery.serialNumber = structure.text(0x07);
    battery.name = structure.text(0x08);
    battery.chemistry = batteryChemistryName(structure.byte(0x09));
    battery.designCapacity = structure.word(0x0A);
    battery.designVoltage = structure.word(0x0C) / MILLIVOLTS;
    readSmartBattery(structure, battery);
}

void readCoolingDevice(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned TYPE_BITS = 0x1F;
    CoolingDeviceFacts& device = facts.coolingDevices.emplace_back();
    device.place = placeOf(structure);
    device.type = coolingTypeName(structure.byte(0x06) & TYPE_BITS);
    device.nominalSpeed = knownWord(structure, 0x0C);
    device.description = structure.text(0x0E);
}

void readManagementController(const SmbiosStructure& structure, SmbiosFacts& facts) {
    if (facts.managementController) {
        return;
    }
    ManagementControllerFacts& controller = facts.managementController.emplace();
    controller.place = placeOf(structure);
    controller.interfaceType = managementInterfaceName(structure.byte(0x04));
    controller.version = fmt::format("{}.{}", structure.byte(0x05) >> 4, structure.byte(0x05) & 0x0F);
}

void readTrustedPlatform(const SmbiosStructure& structure, SmbiosFacts& facts) {
    if (facts.trustedPlatform) {
        return;
    }
    TrustedPlatformFacts& tpm = facts.trustedPlatform.emplace();
    tpm.place = placeOf(structure);
    for (std::size_t i = 0; i < 4 && structure.byte(0x04 + i) != 0; ++i) {
        tpm.vendor.push_back(static_cast<char>(structure.byte(0x04 + i)));
    }
    const unsigned major = structure.byte(0x08);
    tpm.version = fmt::format("{}.{}", major, structure.byte(0x09));
    tpm.firmwareVersion = major == 1 ? fmt::format("{}.{}", structure.byte(0x0C), structure.byte(0x0D))
                                     : fmt::format("{}.{}", structure.word(0x0C), structure.word(0x0A));
    tpm.description = structure.text(0x12);
}

}  // namespace vrx
