/// How a SysInfo document becomes devices and properties.
///
/// A device list starts at the first `Device` under a `SysInfo` child, else at the first `Device` child, else at the
/// first `device` child, and goes on through the siblings of either spelling. Each device is added to the store before
/// the `Device` children that are nested in it; the store hangs all of them below its root. What a recording leaves out
/// is generated from the device's position in its own list, so that the same recording always gives the same machine.
///
/// A property is a key with a text, a list of texts or, when it has units, a measurement. Properties nested in a
/// property belong to the same device and follow it.
///
/// A recording may hold a million properties: texts stay borrowed from the document until the one copy that the store
/// keeps, each element is walked a fixed number of times, and all properties of one key share one property
/// specification. Documents nest no deeper than XmlDocument::MAXIMUM_DEPTH, so the walk may recurse.
///
/// Nor is the document ever held as a whole. When a device's end tag is parsed, the device is made and its element
/// emptied, as long as that cannot be told from reading it later: whether the element counts at all, and its position
/// in its list, are known only at the end. So nothing is registered, logged or added ahead, and a device that needs its
/// position (for a locator that is missing) or a place in the report (for unknown units) waits for the walk.

#include "libInventory/recording/SysInfoReader.h"

#include <optional>
#include <utility>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"
#include "libCommon/values/Measurement.h"
#include "libCommon/values/Unit.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/ImportReport.h"
#include "libInventory/recording/SysInfoStructure.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertySpecImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

/// The children that describe a device itself, the first of each name.
struct DeviceItems {
    const XmlElement* type = nullptr;
    const XmlElement* osLocator = nullptr;
    const XmlElement* hwLocator = nullptr;
    const XmlElement* name = nullptr;
    bool hasDevices = false;
    bool hasLists = false;  ///< something that may hold devices
    CapabilityImp capabilities;
};

void keepFirst(const XmlElement*& item, const XmlElement* child) noexcept {
    if (!item) {
        item = child;
    }
}

DeviceItems itemsOf(XmlElement& device) {
    DeviceItems items;
    for (const XmlElement* child : childElements(device)) {
        const StringView name = child->Name();
        if (sysInfo::isProperty(name)) {
            continue;  // nearly all children are properties
        }
        if (name == sysInfo::TYPE_ITEM) {
            keepFirst(items.type, child);
        } else if (name == sysInfo::OS_LOCATOR_ITEM) {
            keepFirst(items.osLocator, child);
        } else if (name == sysInfo::HW_LOCATOR_ITEM) {
            keepFirst(items.hwLocator, child);
        } else if (name == sysInfo::NAME_ITEM) {
            keepFirst(items.name, child);
        } else if (name == sysInfo::CAPABILITY) {
            items.capabilities = items.capabilities | CapabilityImp(child->NormalizedText());
        } else if (sysInfo::isDevice(name) || name == sysInfo::SYS_INFO) {
            items.hasLists = true;
            items.hasDevices = items.hasDevices || name == sysInfo::DEVICE;
        }
    }
    return items;
}

CapabilityImp typeOf(const XmlElement& device, const DeviceItems& items) {
    const StringView type = device.Attribute(sysInfo::TYPE);
    return type.empty() && items.type ? CapabilityImp(items.type->GetText()) : CapabilityImp(type);
}

bool hasItem(const XmlElement& device, const XmlElement* child, StringView attributeName) {
    return child != nullptr || device.FindAttribute(attributeName) != nullptr;
}

/// The text of the child, also an empty one; else the attribute's; nothing when the device has neither.
std::optional<String> itemText(const XmlElement& device, const XmlElement* child, StringView attributeName) {
    if (child) {
        return child->GetText();
    }
    const XmlAttribute* const attribute = device.FindAttribute(attributeName);
    return attribute ? std::optional<String>(attribute->Value()) : std::nullopt;
}

boost::shared_ptr<IDeviceImp> newDevice(const XmlElement& element, const DeviceItems& items, String name,
                                        String osLocator, String hwLocator,
                                        std::unique_ptr<const RecordedProperties> properties) {
    return DeviceImp::createRecorded(typeOf(element, items), items.capabilities, std::move(name), u"desc",
                                     std::move(osLocator), std::move(hwLocator), std::move(properties));
}

String generatedText(StringView prefix, std::uint32_t counter) { return concat(prefix, toText(counter)); }

struct PropertyAttributes {
    StringView key;
    StringView value;
    StringView units;
};

PropertyAttributes attributesOf(const XmlElement& property) {
    PropertyAttributes attributes;
    for (const XmlAttribute& attribute : property.Attributes()) {
        const StringView name = attribute.Name();
        if (name == sysInfo::KEY) {
            attributes.key = attribute.Value();
        } else if (name == sysInfo::VALUE) {
            attributes.value = attribute.Value();
        } else if (name == sysInfo::UNITS) {
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

bool SysInfoReader::readElement(XmlElement& element) {
    if (!sysInfo::isDevice(element.Name())) {
        m_hasMetOddities = m_hasMetOddities || sysInfo::looksLikeDevice(element);
        return false;
    }
    ++m_devicesMet;
    const DeviceItems items = itemsOf(element);
    if (!hasItem(element, items.osLocator, sysInfo::OS_LOCATOR) ||
        !hasItem(element, items.hwLocator, sysInfo::HW_LOCATOR) || !hasItem(element, items.name, sysInfo::NAME)) {
        return false;
    }
    m_isAhead = true;
    m_hasToWait = false;
    std::unique_ptr<const RecordedProperties> properties = propertiesOf(element);
    m_isAhead = false;
    if (m_hasToWait) {
        return false;
    }
    // The texts last, so that they lie beside the device in memory.
    std::optional<String> osLocator = itemText(element, items.osLocator, sysInfo::OS_LOCATOR);
    std::optional<String> hwLocator = itemText(element, items.hwLocator, sysInfo::HW_LOCATOR);
    std::optional<String> name = itemText(element, items.name, sysInfo::NAME);
    const RecordedProperties* const recorded = properties.get();
    auto device = newDevice(element, items, std::move(name).value(), std::move(osLocator).value(),
                            std::move(hwLocator).value(), std::move(properties));
    element.SetUserData(&m_ahead.emplace_back(DeviceAhead{std::move(device), recorded, items.hasDevices}));
    return !items.hasLists;
}

// Keys that were met stay known, since nobody is told of them before they are used.
void SysInfoReader::startOver() {
    m_ahead.clear();
    m_devicesMet = 0;
    m_hasMetOddities = false;
}

bool SysInfoReader::readDevices(XmlElement& parent) {
    XmlElement* const first = sysInfo::firstDeviceOf(parent);
    if (!first) {
        return false;
    }
    std::uint32_t counter = 0;
    for (XmlElement* element = first; element; element = element->NextSiblingElement()) {
        if (sysInfo::isDevice(element->Name())) {
            readDevice(*element, counter++);
        }
    }
    return true;
}

void SysInfoReader::readDevice(XmlElement& element, std::uint32_t counter) {
    if (auto* const ahead = static_cast<DeviceAhead*>(element.GetUserData())) {
        registerSpecs(*ahead->properties);
        logProperties(*ahead->properties);
        addDevice(std::exchange(ahead->device, nullptr), *ahead->properties);
        if (ahead->hasDevices) {
            readDevices(element);
        }
        return;
    }
    const DeviceItems items = itemsOf(element);
    std::optional<String> osLocator = itemText(element, items.osLocator, sysInfo::OS_LOCATOR);
    if (!osLocator) {
        osLocator = generatedText(u"gen-os-loc", counter);
    }
    std::optional<String> hwLocator = itemText(element, items.hwLocator, sysInfo::HW_LOCATOR);
    if (!hwLocator) {
        hwLocator = generatedText(u"gen-hw-loc", counter);
    }
    std::optional<String> name = itemText(element, items.name, sysInfo::NAME);
    if (!name) {
        // Contract: a missing name replaces the hardware locator and leaves the name empty.
        name.emplace();
        hwLocator = generatedText(u"gen-name", counter);
    }
    std::unique_ptr<const RecordedProperties> properties = propertiesOf(element);
    const RecordedProperties& recorded = *properties;
    addDevice(newDevice(element, items, std::move(*name), std::move(*osLocator), std::move(*hwLocator),
                        std::move(properties)),
              recorded);
    if (items.hasDevices) {
        readDevices(element);
    }
}

void SysInfoReader::addDevice(const boost::shared_ptr<IDeviceImp>& device, const RecordedProperties& properties) {
    ++m_report.devices;
    m_hasMetOddities = m_hasMetOddities || device->type().isInvalid();
    m_report.properties += static_cast<std::uint32_t>(properties.entries().size());
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"populateStateManagerRecursive() adding device: " << device->guid());
    m_store.addDevice(device, nullptr);
}

std::unique_ptr<const RecordedProperties> SysInfoReader::propertiesOf(XmlElement& element) {
    m_expected = 0;
    m_entries.clear();
    m_texts.clear();
    m_otherValues.clear();
    readProperties(element);
    return std::make_unique<const RecordedProperties>(m_specs, m_entries, m_texts, m_otherValues);
}

bool SysInfoReader::readProperties(XmlElement& parent) {
    for (XmlElement* element = sysInfo::firstPropertyOf(parent); element; element = element->NextSiblingElement()) {
        if (sysInfo::isProperty(element->Name()) && !readProperty(*element)) {
            if (!m_isAhead) {
                skip(*element);
            }
            return false;
        }
    }
    return true;
}

bool SysInfoReader::readProperty(XmlElement& element) {
    const PropertyAttributes attributes = attributesOf(element);
    const XmlElement* const keyChild = attributes.key.empty() ? element.FirstChildElement(sysInfo::KEY_ITEM) : nullptr;
    const std::uint32_t spec = keyChild ? specOf(keyChild->GetText()) : specOf(attributes.key);

    bool isNumber = true;
    if (attributes.units.empty()) {
        addPlain(spec, element, attributes.value);
    } else if (std::optional<ValueImp> value = measuredValue(attributes.value, attributes.units, isNumber)) {
        addValue(spec, std::move(*value));
        m_hasMetOddities = m_hasMetOddities || !isNumber;
    } else if (m_isAhead) {
        m_hasToWait = true;
        return false;
    } else {
        return false;
    }
    if (!m_isAhead) {
        logProperty(spec);
    }
    if (!element.NoChildren()) {
        readProperties(element);
    }
    return true;
}

void SysInfoReader::skip(const XmlElement& element) {
    ImportReport::Skipped& skipped = m_report.skipped.emplace();
    const PropertyAttributes attributes = attributesOf(element);
    const XmlElement* const keyChild = attributes.key.empty() ? element.FirstChildElement(sysInfo::KEY_ITEM) : nullptr;
    skipped.key = keyChild ? keyChild->GetText() : String(attributes.key);
    skipped.text = attributes.units;
    skipped.device = m_report.devices;
    skipped.row = element.Row() + 1;
    skipped.column = element.Column() + 1;
    for (const XmlElement* next = element.NextSiblingElement(); next; next = next->NextSiblingElement()) {
        skipped.propertiesBehind += sysInfo::isProperty(next->Name()) ? 1U : 0U;
    }
    VRX_LOG(inventoryLog(), LogPriority::Error, skipped.line());
}

void SysInfoReader::logProperty(std::uint32_t spec) const {
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"populatePropertiesRecursive() adding property: " << (*m_specs)[spec]->key());
}

void SysInfoReader::logProperties(const RecordedProperties& properties) const {
    if (inventoryLog().isEnabled(LogPriority::Debug)) {
        for (const RecordedProperties::Entry& entry : properties.entries()) {
            logProperty(entry.spec);
        }
    }
}

void SysInfoReader::addPlain(std::uint32_t spec, XmlElement& property, StringView attribute) {
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

void SysInfoReader::addText(std::uint32_t spec, StringView text) {
    m_entries.push_back({spec, static_cast<std::uint32_t>(text.size())});
    m_texts.append(text);
}

void SysInfoReader::addValue(std::uint32_t spec, ValueImp value) {
    m_entries.push_back({spec, RecordedProperties::Entry::OTHER_VALUE});
    m_otherValues.push_back(std::move(value));
}

// Devices of one kind list the same keys in the same order, so the key that followed last time is tried first.
std::uint32_t SysInfoReader::specOf(StringView key) {
    if (m_expected == m_specs->size() || (*m_specs)[m_expected]->key() != key) {
        const auto known = m_positions.find(key);
        m_expected = known == m_positions.end() ? newSpec(key) : known->second;
    }
    if (!m_isAhead && m_unregistered > 0) {
        registerSpec(m_expected);
    }
    return m_expected++;
}

std::uint32_t SysInfoReader::newSpec(StringView key) {
    const auto spec = boost::make_shared<PropertySpecImp>(key, PropertyCategoryImp::SysInfo(), DataTypeImp::STRING,
                                                          CapabilityImp::ALL());
    const auto position = static_cast<std::uint32_t>(m_specs->size());
    m_specs->push_back(spec);
    m_isRegistered.push_back(false);
    m_positions.emplace(spec->key(), position);
    m_hasMetOddities = m_hasMetOddities || needsUuEncode(key);
    ++m_unregistered;
    return position;
}

void SysInfoReader::registerSpecs(const RecordedProperties& properties) {
    if (m_unregistered > 0) {
        for (const RecordedProperties::Entry& entry : properties.entries()) {
            registerSpec(entry.spec);
        }
    }
}

// Contract: property specifications go to the process-wide store, whichever store receives the devices.
void SysInfoReader::registerSpec(std::uint32_t position) {
    if (!m_isRegistered[position]) {
        m_isRegistered[position] = true;
        --m_unregistered;
        StateManager::instance().addPropertySpec((*m_specs)[position]);
    }
}

}  // namespace vrx
