/// Board, chassis and BIOS, as far as the firmware tells of them. A device that nothing is known of is not recorded.

#include "host/collect/CollectContext.h"
#include "host/collect/DmiFields.h"
#include "host/collect/PropertyNames.h"

namespace vrx::host {

namespace {

struct BoardDevice {
    SmbiosTable::Type type;
    StringView deviceType;
    std::string_view hwLocator;
    std::string_view name;  ///< where the model is not known
};

constexpr BoardDevice DEVICES[] = {
    {SmbiosTable::CHASSIS, u"Chassis", "chassis", "Chassis"},
    {SmbiosTable::BOARD, u"Motherboard", "board", "Motherboard"},
    {SmbiosTable::BIOS, u"BIOS", "bios", "BIOS"},
};

}  // namespace

void collectBoard(CollectContext& context) {
    static const std::string FOLDER = "/sys/class/dmi/id";
    if (context.smbios.isEmpty() && context.root.list(FOLDER).empty()) {
        context.noteAccess(FOLDER, RootFolder::Access::Absent, "vendor and model of the system, chassis, board, BIOS");
        return;
    }
    for (const BoardDevice& kind : DEVICES) {
        DeviceRecord device;
        device.type = kind.deviceType;
        device.hwLocator = kind.hwLocator;
        device.osLocator = FOLDER;
        device.parent = 0;
        addDmiFields(context, kind.type, device);
        if (!device.properties.empty()) {
            device.name = nameFromModel(device, kind.name);
            context.recording.add(std::move(device));
        }
    }
}

}  // namespace vrx::host
