/// What only the firmware's table tells: expansion slots, power supplies, cooling devices, the management controller,
/// and what batteries, the trusted platform module and on-board devices are called. Runs after the PCI devices are
/// there and before the sources that know more of batteries and trusted platform modules.

#include "libMachine/collect/CollectContext.h"
#include "libMachine/devices/FirmwareDevices.h"
#include "libMachine/linux/PciPlaces.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

/// The names of on-board devices that the kernel passes on, to any user.
void addKernelLabels(CollectContext& context) {
    const PciPlaces places(context.recording);
    for (const auto& [address, place] : places.functions()) {
        const std::string label = context.root.text("/sys/bus/pci/devices/" + address + "/label");
        if (!label.empty()) {
            context.recording.amend(place).text(property::LABEL, label);
        }
    }
}

}  // namespace

void collectFirmwareDevices(CollectContext& context) {
    addKernelLabels(context);
    labelOnboardDevices(context.recording, context.smbios);
    addExpansionSlots(context.recording, context.smbios);
    addPowerSupplies(context.recording, context.smbios);
    addBatteries(context.recording, context.smbios);
    addCoolingDevices(context.recording, context.smbios);
    addManagementController(context.recording, context.smbios);
    addTrustedPlatform(context.recording, context.smbios);
}

}  // namespace vrx
