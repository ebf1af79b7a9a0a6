#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <deque>

#include "libCommon/xml/parsing/XmlElementReader.h"
#include "libInventory/recording/PropertyListReader.h"
#include "libSystemState/Forward.h"

namespace vrx {

class DevicesAhead;

/// A device that was read ahead; the user data of its element points to it.
struct DeviceAhead {
    boost::shared_ptr<IDeviceImp> device;
    const RecordedProperties* properties;
    bool hasDevices;
    const DevicesAhead* reader;
};

/// Makes devices while their document, or some of it, is being parsed. Nobody is told of them.
class DevicesAhead final : public XmlElementReader, private PropertyListReader::Listener {
public:
    /// Reads what the element says of one device, if it is one that says all that a device needs.
    bool readElement(XmlElement& element) override;

    void startOver() override;

    /// Has the properties that were read share specifications. Requires: the document has been parsed.
    void shareSpecs(PropertyListReader& specs) { m_positions = specs.shareWith(m_reader); }

    /// The position in what it shares. Requires: it shares.
    std::uint32_t positionOf(std::uint32_t spec) const { return m_positions[spec]; }

    /// Elements that are called as devices are.
    std::uint32_t devicesMet() const noexcept { return m_devicesMet; }

    /// Whether there was anything that rules of scripts cannot see, or a measurement without a number.
    bool hasMetOddities() const noexcept { return m_hasMetOddities || m_reader.hasMetOddities(); }

private:
    void meetKey(std::uint32_t) override {}
    void takeProperty(std::uint32_t) override {}
    void skipFrom(const XmlElement&) override { m_hasToWait = true; }

    PropertyListReader m_reader;
    std::deque<DeviceAhead> m_devices;
    std::vector<std::uint32_t> m_positions;
    std::uint32_t m_devicesMet = 0;
    bool m_hasMetOddities = false;
    bool m_hasToWait = false;  // whether the device can only be read later
};

}  // namespace vrx
