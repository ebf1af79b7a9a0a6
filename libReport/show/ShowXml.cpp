#include "libInventory/recording/SysInfoWriter.h"
#include "libReport/show/ShowReport.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

std::string showXml(const ShowReport& report, const TextFormat&) {
    if (!report.isChosen) {
        return sysInfoXml(report.machine, true);
    }
    StateManager chosen;
    for (const IDeviceImp* const device : report.devices) {
        chosen.addDevice(StateManager::DevicePointer(device->clone()), nullptr);
    }
    for (const UnreadSource& unread : report.machine.unread()) {
        chosen.addUnread(unread);
    }
    return sysInfoXml(chosen, true);
}

}  // namespace vrx
