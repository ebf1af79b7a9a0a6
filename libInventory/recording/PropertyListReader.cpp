#include "libInventory/recording/PropertyListReader.h"

#include <optional>
#include <utility>

#include "libCommon/text/ShortText.h"
#include "libCommon/text/UuCode.h"
#include "libCommon/values/Measurement.h"
#include "libCommon/values/Unit.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/recording/SysInfoStructure.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/PropertySpecImp.h"

namespace vrx {

namespace {

struct PropertyAttributes {
    StringView key;
    StringView value;
    StringView units;
};

PropertyAttributes attributesOf(const XmlElement& property) {
    PropertyAttributes attributes;
    for (const XmlAttribute& attribute : property.Attributes()) {
        const StringView name = attribute.Name();
        if (isSameText(name, sysInfo::KEY)) {
            attributes.key = attribute.Value();
        } else if (isSameText(name, sysInfo::VALUE)) {
            attributes.value = attribute.Value();
        } else if (isSameText(name, sysInfo::UNITS)) {
            attributes.units = attribute.Value();
        }
    }
    return attributes;
}

/// The texts of the `Value` children that have one, then the attributes of the `value` children.
Array<String> childValues(XmlElement& property) {
    Array<String> values;
    for (const XmlElement* child : childElements(property)) {
        if (child->Name() == sysInfo::VALUE_UPPER) {
            String text = child->GetText();
            if (!text.isEmpty()) {
                values.append(std::move(text));
            }
        }
    }
    for (const XmlElement* child : childElements(property)) {
        if (child->Name() == sysInfo::VALUE) {
            values.emplace(child->Attribute(sysInfo::VALUE));
        }
    }
    return values;
}

/// Empty when the units are unknown. Contract: the number is that of the attribute, 0 when it is none or missing.
std::optional<ValueImp> measuredValue(StringView attribute, StringView units, bool& isNumber) {
    const std::optional<Unit> unit = Unit::lookupByString(units);
    if (!unit) {
        return std::nullopt;
    }
    return ValueImp(DiscreteMeasurement(unit->type(), String(attribute).strToReal64(&isNumber), unit->magnitude()));
}

}  // namespace

std::unique_ptr<const RecordedProperties> PropertyListReader::read(XmlElement& device, Listener& listener) {
    m_expected = 0;
    m_entries.clear();
    m_texts.clear();
    m_otherValues.clear();
    readList(device, listener);
    return std::make_unique<const RecordedProperties>(m_specs, m_entries, m_texts, m_otherValues);
}

bool PropertyListReader::readList(XmlElement& parent, Listener& listener) {
    for (XmlElement* element = sysInfo::firstPropertyOf(parent); element; element = element->NextSiblingElement()) {
        if (sysInfo::isProperty(element->Name()) && !readProperty(*element, listener)) {
            listener.skipFrom(*element);
            return false;
        }
    }
    return true;
}

bool PropertyListReader::readProperty(XmlElement& element, Listener& listener) {
    const PropertyAttributes attributes = attributesOf(element);
    const XmlElement* const keyChild = attributes.key.empty() ? element.FirstChildElement(sysInfo::KEY_ITEM) : nullptr;
    const std::uint32_t spec = keyChild ? specOf(keyChild->GetText()) : specOf(attributes.key);
    listener.meetKey(spec);

    bool isNumber = true;
    if (attributes.units.empty()) {
        addPlain(spec, element, attributes.value);
    } else if (std::optional<ValueImp> value = measuredValue(attributes.value, attributes.units, isNumber)) {
        addValue(spec, std::move(*value));
        m_hasMetOddities = m_hasMetOddities || !isNumber;
    } else {
        return false;
    }
    listener.takeProperty(spec);
    if (!element.NoChildren()) {
        readList(element, listener);
    }
    return true;
}

void PropertyListReader::addPlain(std::uint32_t spec, XmlElement& property, StringView attribute) {
    if (!attribute.empty() || property.NoChildren()) {
        addText(spec, attribute);
        return;
    }
    Array<String> values = childValues(property);
    if (values.size() > 1) {
        addValue(spec, ValueImp(std::move(values)));
    } else {
        addText(spec, values.isEmpty() ? StringView() : values.front().view());
    }
}

void PropertyListReader::addText(std::uint32_t spec, StringView text) {
    m_entries.push_back({spec, static_cast<std::uint32_t>(text.size())});
    m_texts.append(text);
}

void PropertyListReader::addValue(std::uint32_t spec, ValueImp value) {
    m_entries.push_back({spec, RecordedProperties::Entry::OTHER_VALUE});
    m_otherValues.push_back(std::move(value));
}

// Devices of one kind list the same keys in the same order, so the key that followed last time is tried first.
std::uint32_t PropertyListReader::specOf(StringView key) {
    if (m_expected == m_specs->size() || !isSameText((*m_specs)[m_expected]->key(), key)) {
        const auto known = m_positions.find(key);
        if (known != m_positions.end()) {
            m_expected = known->second;
        } else {
            m_hasMetOddities = m_hasMetOddities || needsUuEncode(key);
            m_expected = newSpec(boost::make_shared<PropertySpecImp>(key, PropertyCategoryImp::SysInfo(),
                                                                     DataTypeImp::STRING, CapabilityImp::ALL()));
        }
    }
    return m_expected++;
}

std::uint32_t PropertyListReader::newSpec(boost::shared_ptr<PropertySpecImp> spec) {
    const auto position = static_cast<std::uint32_t>(m_specs->size());
    m_positions.emplace(spec->key(), position);
    m_specs->push_back(std::move(spec));
    return position;
}

std::vector<std::uint32_t> PropertyListReader::shareWith(PropertyListReader& other) {
    std::vector<std::uint32_t> positions;
    for (boost::shared_ptr<PropertySpecImp>& spec : *other.m_specs) {
        const auto known = m_positions.find(spec->key());
        positions.push_back(known != m_positions.end() ? known->second : newSpec(spec));
        spec = (*m_specs)[positions.back()];
    }
    return positions;
}

}  // namespace vrx
