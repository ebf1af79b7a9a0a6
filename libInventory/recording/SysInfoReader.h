#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/text/TextHash.h"
#include "libCommon/xml/parsing/XmlElementReader.h"
#include "libInventory/ImportReport.h"
#include "libSystemState/Forward.h"
#include "libSystemState/properties/PropertySpecImp.h"
#include "libSystemState/properties/RecordedProperties.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

/// Reads the devices of one SysInfo document into a store. A reader serves one document and must not outlive the store
/// or the report.
///
/// Devices may be read while the document is being parsed, with the reader given to `XmlDocument`; the store gets them
/// from `readDevices` afterwards in any case.
class SysInfoReader final : public XmlElementReader {
public:
    /// What is added and what is left out goes into the report.
    SysInfoReader(StateManager& store, ImportReport& report) : m_store(store), m_report(report) {}

    /// Reads ahead what the element says of one device, if it is one that says all that a device needs.
    bool readElement(XmlElement& element) override;

    void startOver() override;

    /// Those that may be left out, which the report then tells the places of.
    const char* attributeOfPlacedElements() const noexcept override { return "units"; }

    /// Adds the devices that are listed under an element, each followed by those nested in it. False when the element
    /// holds no device list.
    bool readDevices(XmlElement& parent);

    /// Whether there was anything that rules of scripts cannot see, or a measurement without a number. Requires: the
    /// document was read while it was parsed.
    bool hasMetOddities() const noexcept { return m_hasMetOddities || m_devicesMet != m_report.devices; }

private:
    /// A device that was read ahead; its element's user data points to it.
    struct DeviceAhead {
        boost::shared_ptr<IDeviceImp> device;
        const RecordedProperties* properties;
        bool hasDevices;
    };

    void readDevice(XmlElement& element, std::uint32_t counter);
    void addDevice(const boost::shared_ptr<IDeviceImp>& device, const RecordedProperties& properties);

    /// The properties that stand under the element of a device.
    std::unique_ptr<const RecordedProperties> propertiesOf(XmlElement& element);

    /// Adds the properties that stand under an element to m_entries. False when it had to stop at one with unknown
    /// units, which is in the report then.
    bool readProperties(XmlElement& parent);
    bool readProperty(XmlElement& element);

    /// Enters a property with unknown units, and those behind it, as left out.
    void skip(const XmlElement& property);
    void logProperty(std::uint32_t spec) const;
    void logProperties(const RecordedProperties& properties) const;

    /// Adds the property with the attribute's value or, when that is empty, with the values of its children.
    void addPlain(std::uint32_t spec, XmlElement& property, StringView attribute);
    void addText(std::uint32_t spec, StringView text);
    void addValue(std::uint32_t spec, ValueImp value);

    /// Position of the property specification of that key; all properties of a key share one.
    std::uint32_t specOf(StringView key);
    std::uint32_t newSpec(StringView key);

    /// Registers what the properties use and is not registered yet.
    void registerSpecs(const RecordedProperties& properties);
    void registerSpec(std::uint32_t position);

    StateManager& m_store;
    ImportReport& m_report;
    boost::shared_ptr<RecordedProperties::Specs> m_specs =
        boost::make_shared<RecordedProperties::Specs>();  // in the order in which their keys were first met
    std::vector<bool> m_isRegistered;                     // for each of m_specs
    std::size_t m_unregistered = 0;

    // The properties of the device being read.
    std::vector<RecordedProperties::Entry> m_entries;
    std::u16string m_texts;
    std::vector<ValueImp> m_otherValues;
    bool m_isAhead = false;    // whether what is read may still come to nothing, so that nobody must hear of it
    bool m_hasToWait = false;  // whether the device that is read ahead can only be read later
    std::deque<DeviceAhead> m_ahead;
    boost::unordered_flat_map<StringView, std::uint32_t, TextHash> m_positions;  // the keys are borrowed from m_specs
    std::uint32_t m_devicesMet = 0;  // elements that are called as devices are
    bool m_hasMetOddities = false;
    std::uint32_t m_expected = 0;  // position of the property specification that the next property probably has
};

}  // namespace vrx
