/// The root device: the machine as a whole. What the vendor calls it comes from the firmware (see DmiFields.h) or, on
/// machines without SMBIOS, from the device tree.

#include "libMachine/collect/CollectContext.h"
#include "libMachine/collect/DmiFields.h"
#include "libMachine/devices/MachineDevices.h"

namespace vrx {

namespace {

void replaceFrom(std::string& text, const RootFolder& root, const std::string& path) {
    if (std::string better = root.text(path); !better.empty()) {
        text = std::move(better);
    }
}

}  // namespace

void collectSystem(CollectContext& context) {
    SystemFacts facts = dmiSystem(context);
    if (cleanName(facts.model).empty()) {
        replaceFrom(facts.model, context.root, "/proc/device-tree/model");
        replaceFrom(facts.serialNumber, context.root, "/proc/device-tree/serial-number");
    }
    DeviceRecord system = systemDevice(facts);
    if (context.cpuInfo.isVirtual() || (context.smbios.bios && context.smbios.bios->isVirtualMachine)) {
        system.flag(property::VIRTUAL, true);
    }
    context.recording.add(std::move(system));
}

}  // namespace vrx
