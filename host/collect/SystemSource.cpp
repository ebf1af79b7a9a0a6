/// The root device: the machine as a whole. What the vendor calls it comes from the firmware (see BoardSource.cpp) or,
/// on machines without SMBIOS, from the device tree.

#include "host/collect/CollectContext.h"
#include "host/collect/DmiFields.h"
#include "host/collect/PropertyNames.h"

namespace vrx::host {

void collectSystem(CollectContext& context) {
    DeviceRecord system;
    system.type = u"System";
    system.hwLocator = "system";
    system.osLocator = "/sys/devices/system";
    addDmiFields(context, SmbiosTable::SYSTEM, system);
    if (!system.has(property::MODEL)) {
        system.text(property::MODEL, context.root.text("/proc/device-tree/model"));
        system.text(property::SERIAL_NUMBER, context.root.text("/proc/device-tree/serial-number"));
    }
    if (context.cpuInfo.isVirtual()) {
        system.flag(property::VIRTUAL, true);
    }
    system.name = nameFromModel(system, "System");
    context.recording.add(std::move(system));
}

}  // namespace vrx::host
