#include "libDiagnosis/faults/FreeDevices.h"

#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

FreeDevices::FreeDevices(const Inventory& inventory, const StateManager& machine)
    : m_inventory(inventory), m_machine(machine) {
    for (const ExtraDevice& extra : inventory.extraDevicesWithRules()) {
        m_extra.insert(extra.device.get());
    }
}

bool FreeDevices::isFree(const IDeviceImp& device) const {
    return !m_taken.contains(&device) && (m_released.contains(&device) || m_inventory.holderOf(device) == nullptr);
}

bool FreeDevices::exchange(const IDeviceImp& device) {
    const XmlElement* const holder = m_taken.contains(&device) ? nullptr : m_inventory.holderOf(device);
    if (holder == nullptr || !askedFor(*holder, vocabulary::HW_LOCATOR).isEmpty() ||
        !askedFor(*holder, vocabulary::OS_LOCATOR).isEmpty()) {
        return false;
    }
    for (const Candidate& other : m_inventory.outcomeOf(*holder).candidates) {
        if (other.failures.isEmpty() && isFree(*other.device)) {
            take(*other.device);
            release(device);
            return true;
        }
    }
    return false;
}

const IDeviceImp* FreeDevices::at(const Inventory::DeviceSpec& asked, const CapabilityImp& type) const {
    const bool hasHwLocator = !asked.hwLocator.isEmpty();
    if (!hasHwLocator && asked.osLocator.isEmpty()) {
        return nullptr;
    }
    const IDeviceImp* found = nullptr;
    for (const auto& device :
         hasHwLocator ? m_machine.devicesByHwLocator(asked.hwLocator) : m_machine.devicesByOsLocator(asked.osLocator)) {
        if (!type.isCapable(device->type())) {
            continue;
        }
        if (isFree(*device)) {
            return device.get();
        }
        found = found == nullptr ? device.get() : found;
    }
    return found;
}

std::vector<const IDeviceImp*> FreeDevices::ofType(const CapabilityImp& type) const {
    std::vector<const IDeviceImp*> devices;
    for (const auto& device : m_machine.devicesCapableOf(type)) {
        if (isFree(*device)) {
            devices.push_back(device.get());
        }
    }
    return devices;
}

}  // namespace vrx
