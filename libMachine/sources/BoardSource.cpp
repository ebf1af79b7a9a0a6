/// Board, chassis and BIOS, as far as the firmware tells of them. A device that nothing is known of is not recorded.

#include "libMachine/collect/CollectContext.h"
#include "libMachine/collect/DmiFields.h"
#include "libMachine/devices/MachineDevices.h"

namespace vrx {

void collectBoard(CollectContext& context) {
    static const std::string FOLDER = "/sys/class/dmi/id";
    if (context.smbios.isEmpty && context.root.list(FOLDER).empty()) {
        context.noteAccess(FOLDER, RootFolder::Access::Absent, "vendor and model of the system, chassis, board, BIOS");
        return;
    }
    addChassis(context.recording, dmiChassis(context));
    addFurtherChassis(context.recording, context.smbios);
    addBoard(context.recording, dmiBoard(context));
    addFurtherBoards(context.recording, context.smbios);
    addBios(context.recording, dmiBios(context));
}

}  // namespace vrx
