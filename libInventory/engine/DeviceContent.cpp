#include "libInventory/DeviceContent.h"

#include <utility>

#include "libInventory/Inventory.h"
#include "libInventory/engine/matching/ContentTest.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

DeviceContent::Askable DeviceContent::askableOf(const IDeviceImp& device) {
    if (!Inventory::canCheckDevice(device)) {
        return Askable::No;
    }
    const CapabilityImp namedType(device.type().toString(0, false));
    if (namedType == CapabilityImp::INVALID()) {
        return Askable::OfInvalidType;
    }
    return namedType == device.type() ? Askable::Yes : Askable::Oddly;
}

DeviceContent::DeviceContent(String content) : m_content(std::move(content)) {}

DeviceContent::~DeviceContent() = default;

// A device that does not hold the content meets it under no type, so that its type is looked at last.
bool DeviceContent::isMetBy(const IDeviceImp& device) const {
    if (!m_test) {
        m_test = std::make_unique<const ContentTest>(m_content);
    }
    if (!m_test->isReady() || !m_test->holdsFor(device)) {
        return false;
    }
    const Askable askable = askableOf(device);
    return askable == Askable::Yes ||
           (askable == Askable::Oddly && Inventory::checkDevice(device, m_content, nullptr, false));
}

}  // namespace vrx
