#include "libInventory/recording/DevicesAhead.h"

#include <optional>
#include <utility>

#include "libCommon/xml/XmlElement.h"
#include "libInventory/recording/DeviceElement.h"
#include "libInventory/recording/SysInfoStructure.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

bool DevicesAhead::readElement(XmlElement& element) {
    if (sysInfo::isProperty(element.Name())) {
        return false;  // nearly always
    }
    if (!sysInfo::isDevice(element.Name())) {
        m_hasMetOddities = m_hasMetOddities || sysInfo::looksLikeDevice(element);
        return false;
    }
    ++m_devicesMet;
    const DeviceElement parts(element);
    if (!parts.isComplete()) {
        return false;
    }
    m_hasToWait = false;
    std::unique_ptr<const RecordedProperties> properties = m_reader.read(element, *this);
    if (m_hasToWait) {
        return false;
    }
    // The texts last, so that they lie beside the device in memory.
    String osLocator = parts.osLocator().value();
    String hwLocator = parts.hwLocator().value();
    String name = parts.name().value();
    const RecordedProperties* const recorded = properties.get();
    auto device = parts.makeDevice(std::move(name), std::move(osLocator), std::move(hwLocator), std::move(properties));
    element.SetUserData(&m_devices.emplace_back(DeviceAhead{std::move(device), recorded, parts.hasDevices(), this}));
    return !parts.hasLists();
}

// Keys that were met stay known, since nobody is told of them before they are used.
void DevicesAhead::startOver() {
    m_devices.clear();
    m_devicesMet = 0;
    m_hasMetOddities = false;
}

}  // namespace vrx
