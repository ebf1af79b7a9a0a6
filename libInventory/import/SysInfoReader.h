#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>

#include "libCommon/containers/HashTable.h"
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

    /// The specification of all properties of that key, registered when the key is met for the first time.
    boost::shared_ptr<PropertySpecImp> specOf(StringView key);

    StateManager& m_store;
    HashTable<StringView, boost::shared_ptr<PropertySpecImp>> m_specs;  // the keys are borrowed from the values
};

}  // namespace vrx
