#pragma once

#include <boost/shared_ptr.hpp>
#include <memory>
#include <optional>

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/RecordedProperties.h"

namespace vrx {

/// What the element of a recorded device says of the device itself: each in an attribute or in the first child of that
/// name.
class DeviceElement {
public:
    /// The element is borrowed.
    explicit DeviceElement(XmlElement& element);

    bool hasDevices() const noexcept { return m_hasDevices; }

    /// Whether it has something in it that may hold devices.
    bool hasLists() const noexcept { return m_hasLists; }

    /// Whether it has a name and both locators.
    bool isComplete() const;

    /// The text of the child, also an empty one; else the attribute's; nothing when the device has neither.
    std::optional<String> osLocator() const;
    std::optional<String> hwLocator() const;
    std::optional<String> name() const;

    boost::shared_ptr<IDeviceImp> makeDevice(String name, String osLocator, String hwLocator,
                                             std::unique_ptr<const RecordedProperties> properties) const;

private:
    void take(const XmlElement& child);
    CapabilityImp type() const;

    const XmlElement& m_element;
    const XmlElement* m_type = nullptr;
    const XmlElement* m_osLocator = nullptr;
    const XmlElement* m_hwLocator = nullptr;
    const XmlElement* m_name = nullptr;
    bool m_hasDevices = false;
    bool m_hasLists = false;
    CapabilityImp m_capabilities;
};

}  // namespace vrx
