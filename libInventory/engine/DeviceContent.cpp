#include "libInventory/DeviceContent.h"

#include <utility>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/matching/ContentTest.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

/// Whether a single-device check comes to try the device.
bool isTriedOn(const IDeviceImp& device, const String& content) {
    Inventory engine;
    Inventory::checkDevice(device, content, nullptr, false, engine);
    const XmlElement* const root = engine.script().RootElement();
    return root != nullptr && !engine.outcomeOf(*root->FirstChildElement()).candidates.isEmpty();
}

}  // namespace

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

const ContentTest& DeviceContent::test() const {
    if (!m_test) {
        m_test = std::make_unique<const ContentTest>(m_content);
    }
    return *m_test;
}

// A device that does not hold the content meets it under no type, so that its type is looked at last.
bool DeviceContent::isMetBy(const IDeviceImp& device) const {
    if (!test().isReady() || !test().holdsFor(device)) {
        return false;
    }
    const Askable askable = askableOf(device);
    return askable == Askable::Yes ||
           (askable == Askable::Oddly && Inventory::checkDevice(device, m_content, nullptr, false));
}

const XmlElement* DeviceContent::element() const { return test().element(); }

Array<Finding> DeviceContent::failuresOf(const IDeviceImp& device) const {
    const Askable askable = askableOf(device);
    const bool isTried = askable == Askable::Yes || (askable == Askable::Oddly && isTriedOn(device, m_content));
    return isTried && test().isReady() ? test().failuresOf(device) : Array<Finding>();
}

}  // namespace vrx
