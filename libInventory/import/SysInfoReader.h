#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElementReader.h"
#include "libSystemState/Forward.h"
#include "libSystemState/properties/PropertySpecImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

/// Reads the devices of one SysInfo document into a store. A reader serves one document and must not outlive the store.
///
/// Devices may be read while the document is being parsed, with the reader given to `XmlDocument`; the store gets them
/// from `readDevices` afterwards in any case.
class SysInfoReader final : public XmlElementReader {
public:
    explicit SysInfoReader(StateManager& store) noexcept : m_store(store) {}

    /// Reads ahead what the element says of one device, if it is one that says all that a device needs.
    bool readElement(XmlElement& element) override;

    /// Adds the devices that are listed under an element, each followed by those nested in it. False, after a log line,
    /// when the element holds no device list.
    bool readDevices(XmlElement& parent);

private:
    /// A device that was read ahead; its element's user data points to it.
    struct DeviceAhead {
        boost::shared_ptr<IDeviceImp> device;
        bool hasDevices;
    };

    void readDevice(XmlElement& element, std::uint32_t counter);
    void addDevice(const boost::shared_ptr<IDeviceImp>& device);

    /// Gives the device the properties that stand under an element, all in one piece of memory.
    void addProperties(IDeviceImp& device, XmlElement& element);

    /// Adds the properties that stand under an element to m_properties. False, after a log line, when it had to stop at
    /// one with unknown units.
    bool readProperties(XmlElement& parent);
    bool readProperty(XmlElement& element);

    /// The property specification of that key; all properties of a key share one.
    boost::shared_ptr<PropertySpecImp> specOf(StringView key);
    std::size_t newSpec(StringView key);

    /// Registers what the device's properties use and is not registered yet.
    void registerSpecs(const IDeviceImp& device);
    void registerSpec(std::size_t position);

    StateManager& m_store;
    struct KeyHash {
        std::size_t operator()(StringView key) const noexcept { return hashOf(key); }
    };
    struct Spec {
        boost::shared_ptr<PropertySpecImp> spec;
        bool isRegistered = false;
    };
    Array<Spec> m_specs;  // in the order in which their keys were first met
    std::size_t m_unregistered = 0;
    std::vector<std::pair<boost::shared_ptr<PropertySpecImp>, ValueImp>> m_properties;  // of the device being read
    bool m_isAhead = false;    // whether what is read may still come to nothing, so that nobody must hear of it
    bool m_hasToWait = false;  // whether the device that is read ahead can only be read later
    std::deque<DeviceAhead> m_ahead;
    boost::unordered_flat_map<StringView, std::size_t, KeyHash> m_positions;  // the keys are borrowed from m_specs
    std::size_t m_expected = 0;  // position of the property specification that the next property probably has
};

}  // namespace vrx
