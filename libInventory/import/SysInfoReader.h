#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

class XmlElement;

/// Reads the devices of one SysInfo document into a store. A reader serves one document and must not outlive the store.
class SysInfoReader {
public:
    explicit SysInfoReader(StateManager& store) noexcept : m_store(store) {}

    /// Adds the devices that are listed under an element, each followed by those nested in it. False, after a log line,
    /// when the element holds no device list.
    bool readDevices(XmlElement& parent);

private:
    void readDevice(XmlElement& element, std::uint32_t counter);

    /// Gives the device the properties that stand under an element. False, after a log line, when it had to stop at one
    /// with unknown units.
    bool readProperties(IDeviceImp& device, XmlElement& parent);
    bool readProperty(IDeviceImp& device, XmlElement& element);

    /// The property specification of that key, registered when the key is met for the first time.
    boost::shared_ptr<PropertySpecImp> specOf(StringView key);

    StateManager& m_store;
    struct KeyHash {
        std::size_t operator()(StringView key) const noexcept { return hashOf(key); }
    };
    Array<boost::shared_ptr<PropertySpecImp>> m_specs;  // in the order in which their keys were first met
    boost::unordered_flat_map<StringView, std::size_t, KeyHash> m_positions;  // the keys are borrowed from m_specs
    std::size_t m_expected = 0;  // position of the property specification that the next property probably has
};

}  // namespace vrx
