#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"
#include "libCommon/text/TextHash.h"
#include "libSystemState/Forward.h"
#include "libSystemState/properties/RecordedProperties.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

/// Reads the properties that stand under the elements of recorded devices. All properties of one key share one property
/// specification.
class PropertyListReader {
public:
    /// Hears of the properties while they are read. Specifications are told by their positions.
    class Listener {
    public:
        virtual ~Listener() = default;
        virtual void meetKey(std::uint32_t spec) = 0;
        virtual void takeProperty(std::uint32_t spec) = 0;

        /// It has unknown units: nothing is made of it, nor of those behind it in its list.
        virtual void skipFrom(const XmlElement& property) = 0;
    };

    /// The properties of a device.
    std::unique_ptr<const RecordedProperties> read(XmlElement& device, Listener& listener);

    /// In the order in which their keys were first met.
    const RecordedProperties::Specs& specs() const noexcept { return *m_specs; }

    /// Has the properties that another reader read share the specifications of this one. The positions here of those
    /// there. Requires: the other one has read all that it will.
    std::vector<std::uint32_t> shareWith(PropertyListReader& other);

    /// Whether there was a key that cannot stand in a script as it is, or a measurement without a number.
    bool hasMetOddities() const noexcept { return m_hasMetOddities; }

private:
    /// False when it had to stop at a property with unknown units.
    bool readList(XmlElement& parent, Listener& listener);
    bool readProperty(XmlElement& element, Listener& listener);

    /// Adds the property with the attribute's value or, when that is empty, with the values of its children.
    void addPlain(std::uint32_t spec, XmlElement& property, StringView attribute);
    void addText(std::uint32_t spec, StringView text);
    void addValue(std::uint32_t spec, ValueImp value);

    std::uint32_t specOf(StringView key);
    std::uint32_t newSpec(boost::shared_ptr<PropertySpecImp> spec);

    boost::shared_ptr<RecordedProperties::Specs> m_specs = boost::make_shared<RecordedProperties::Specs>();
    boost::unordered_flat_map<StringView, std::uint32_t, TextHash> m_positions;  // the keys are borrowed from m_specs
    std::uint32_t m_expected = 0;  // position in m_specs of what the next property probably is
    bool m_hasMetOddities = false;

    // The properties of the device being read.
    std::vector<RecordedProperties::Entry> m_entries;
    std::u16string m_texts;
    std::vector<ValueImp> m_otherValues;
};

}  // namespace vrx
