#include "libReport/MachineIdentity.h"

#include <utility>

#include "libDiagnosis/DeviceIdentity.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

const IDeviceImp* firstOf(const StateManager& machine, StringView type) {
    const StateManager::DeviceArray& devices = machine.devicesCapableOf(CapabilityImp(type));
    return devices.isEmpty() ? nullptr : devices[0].get();
}

String hostNameOf(const StateManager& machine) {
    for (const auto& system : machine.devicesCapableOf(CapabilityImp(u"OperatingSystem"))) {
        if (const IPropertyImp* const name = system->findProperty(property::HOST_NAME)) {
            return name->value().toString(true);
        }
    }
    return {};
}

}  // namespace

MachineIdentity machineIdentity(const StateManager& machine) {
    MachineIdentity result;
    for (const StringView type : {u"System", u"Motherboard"}) {
        if (const IDeviceImp* const device = firstOf(machine, type)) {
            DeviceIdentity identity = identityOf(*device);
            result.manufacturer = std::move(identity.manufacturer);
            result.model = std::move(identity.model);
            result.serialNumber = std::move(identity.serialNumber);
            break;
        }
    }
    result.hostName = hostNameOf(machine);
    return result;
}

}  // namespace vrx
