/// Slots, on-board devices, power supplies, batteries, cooling devices and management parts out of the text of
/// dmidecode.

#include "libMachine/import/dmidecode/DmidecodeReaders.h"

namespace vrx {

void readExpansionSlot(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    ExpansionSlotFacts& slot = facts.slots.emplace_back();
    slot.place = place;
    slot.designation = values.text("Designation");
    slot.type = values.word("Type");
    slot.usage = values.word("Current Usage");
    slot.length = values.word("Length");
    slot.busAddress = values.text("Bus Address");
}

void readOnboardDevice(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    OnboardDeviceFacts& device = facts.onboardDevices.emplace_back();
    device.place = place;
    device.designation = values.text("Reference Designation");
    device.type = values.word("Type");
    device.isEnabled = values.text("Status") == "Enabled";
    device.busAddress = values.text("Bus Address");
}

void readPowerSupply(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    PowerSupplyFacts& supply = facts.powerSupplies.emplace_back();
    supply.place = place;
    supply.location = values.text("Location");
    supply.name = values.text("Name");
    supply.vendor = values.text("Manufacturer");
    supply.serialNumber = values.text("Serial Number");
    supply.assetTag = values.text("Asset Tag");
    supply.partNumber = values.text("Model Part Number");
    supply.revision = values.text("Revision");
    supply.maxPower = static_cast<unsigned>(values.measure("Max Power Capacity", "W"));
    supply.isPresent = values.text("Status") != "Not Present";
}

void readPortableBattery(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    static constexpr double MILLI = 1000;
    PortableBatteryFacts& battery = facts.batteries.emplace_back();
    battery.place = place;
    battery.location = values.text("Location");
    battery.vendor = values.text("Manufacturer");
    battery.serialNumber = values.text("Serial Number");
    if (battery.serialNumber.empty()) {
        battery.serialNumber = values.text("SBDS Serial Number");
    }
    battery.name = values.text("Name");
    battery.chemistry = values.word("Chemistry");
    if (battery.chemistry.empty()) {
        battery.chemistry = values.text("SBDS Chemistry");
    }
    battery.designCapacity = static_cast<unsigned>(values.measure("Design Capacity", "mWh"));
    battery.designVoltage = values.measure("Design Voltage", "mV") / MILLI;
}

void readCoolingDevice(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    CoolingDeviceFacts& device = facts.coolingDevices.emplace_back();
    device.place = place;
    device.type = values.word("Type");
    device.description = values.text("Description");
    device.nominalSpeed = static_cast<unsigned>(values.measure("Nominal Speed", "rpm|RPM"));
}

void readManagementController(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    if (facts.managementController) {
        return;
    }
    ManagementControllerFacts& controller = facts.managementController.emplace();
    controller.place = place;
    const std::string type = values.word("Interface Type");
    controller.interfaceType = type.substr(0, type.find(" ("));
    controller.version = values.text("Specification Version");
}

void readTrustedPlatform(const DmidecodeValues& values, const SmbiosPlace& place, SmbiosFacts& facts) {
    if (facts.trustedPlatform) {
        return;
    }
    TrustedPlatformFacts& tpm = facts.trustedPlatform.emplace();
    tpm.place = place;
    tpm.vendor = values.text("Vendor ID");
    tpm.version = values.text("Specification Version");
    tpm.firmwareVersion = values.text("Firmware Revision");
    tpm.description = values.text("Description");
}

}  // namespace vrx
