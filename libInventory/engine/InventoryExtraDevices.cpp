/// Devices beyond the script. A device is extra when one `fail-on-extra` rule covers it by type or capability, the
/// device satisfies the rule's constraints, and the reduced graph holds no link for it (or never saw it). Devices that
/// no rule covers are never extra. A device is recorded once a call, under the first rule that makes it extra.
///
/// With debug logging off only devices that some rule covers are looked at; the others could not be recorded.

#include "libInventory/Inventory.h"
#include "libInventory/engine/ExtraDeviceRules.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

bool Inventory::checkForExtraDevices(bool failOnExtra, unsigned errorsIndex, unsigned) {
    State& state = *m_state;
    bool foundExtras = false;
    if (!state.m_failOnExtraElements.isEmpty()) {
        if (!state.m_extraDeviceRules) {
            state.m_extraDeviceRules =
                std::make_unique<ExtraDeviceRules>(state.m_failOnExtraElements, *state.m_stateManager);
        }
        const auto& devices = inventoryLog().isEnabled(LogPriority::Debug)
                                  ? state.m_stateManager->devicesCapableOf(CapabilityImp::ALL())
                                  : state.m_extraDeviceRules->coveredDevices();
        for (const auto& device : devices) {
            foundExtras = checkForOneExtraDevice(device, errorsIndex, failOnExtra) || foundExtras;
        }
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"checkForExtraDevices() foundExtras: " << foundExtras);
    return !foundExtras;
}

bool Inventory::checkForOneExtraDevice(const boost::shared_ptr<IDeviceImp>& device, unsigned errorsIndex,
                                       bool failOnExtra) {
    ExtraDeviceRules& rules = *m_state->m_extraDeviceRules;
    for (std::size_t rule = 0; rule < rules.count(); ++rule) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"checkForExtraDevices() dev: " << device->guid() << u" extra: " << rules.element(rule).toString());
        if (!rules.covers(rule, *device)) {
            continue;
        }
        bool found = false;
        bool isExtra = m_state->m_associations.isExtra(device, found);
        if (!found) {
            VRX_LOG(
                inventoryLog(), LogPriority::Debug,
                u"checkForExtraDevices() dev: " << device->toString() << u" no associations found, marking as extra.");
            isExtra = true;
        }
        if (isExtra && rules.satisfiesConstraints(rule, *device)) {
            recordExtraDevice(*device, errorsIndex, failOnExtra);
            return true;
        }
    }
    return false;
}

void Inventory::recordExtraDevice(const IDeviceImp& device, unsigned errorsIndex, bool failOnExtra) {
    XmlElement* const root = m_state->m_script.Error() ? nullptr : m_state->m_script.RootElement();
    const String type = device.type().toString(0, false);
    appendExtra(root, DeviceSpec(device.name(), type, device.hwLocator(), device.osLocator()), errorsIndex);
    if (failOnExtra) {
        appendTip(root,
                  InventoryTip(concat(u"Found Extra Device: ", type, u" - ", device.name()), m_state->m_scriptFileName,
                               root, String::EMPTY, String::EMPTY),
                  errorsIndex);
    }
}

}  // namespace vrx
