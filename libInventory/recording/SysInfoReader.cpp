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
///
/// Several threads may read ahead, each its own part of the document with property specifications of its own; before
/// the walk they come to share one for each key.

#include "libInventory/recording/SysInfoReader.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

#include "libCommon/text/NumberText.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/recording/DeviceElement.h"
#include "libInventory/recording/SysInfoStructure.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/PropertySpecImp.h"

namespace vrx {

namespace {

String generatedText(StringView prefix, std::uint32_t counter) { return concat(prefix, toText(counter)); }

}  // namespace

void SysInfoReader::startOver() {
    m_ahead.resize(1);
    m_ahead.front().startOver();
}

bool SysInfoReader::hasMetOddities() const {
    const bool hasAny = m_hasMetOddities || m_reader.hasMetOddities() ||
                        std::any_of(m_ahead.begin(), m_ahead.end(), std::mem_fn(&DevicesAhead::hasMetOddities));
    std::uint32_t devicesMet = 0;
    for (const DevicesAhead& ahead : m_ahead) {
        devicesMet += ahead.devicesMet();
    }
    return hasAny || devicesMet != m_report.devices;
}

bool SysInfoReader::readDevices(XmlElement& root) {
    for (DevicesAhead& ahead : m_ahead) {
        ahead.shareSpecs(m_reader);
    }
    return readList(root);
}

bool SysInfoReader::readList(XmlElement& parent) {
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
        addAhead(*ahead);
        if (ahead->hasDevices) {
            readList(element);
        }
        return;
    }
    const DeviceElement parts(element);
    String osLocator = parts.osLocator().value_or(generatedText(u"gen-os-loc", counter));
    String hwLocator = parts.hwLocator().value_or(generatedText(u"gen-hw-loc", counter));
    std::optional<String> name = parts.name();
    if (!name) {
        // Contract: a missing name replaces the hardware locator and leaves the name empty.
        name.emplace();
        hwLocator = generatedText(u"gen-name", counter);
    }
    std::unique_ptr<const RecordedProperties> properties = m_reader.read(element, *this);
    const RecordedProperties& recorded = *properties;
    addDevice(parts.makeDevice(std::move(*name), std::move(osLocator), std::move(hwLocator), std::move(properties)),
              recorded);
    if (parts.hasDevices()) {
        readList(element);
    }
}

void SysInfoReader::addAhead(DeviceAhead& ahead) {
    const DevicesAhead& reader = *ahead.reader;
    if (m_registered < m_reader.specs().size()) {
        for (const RecordedProperties::Entry& entry : ahead.properties->entries()) {
            registerSpec(reader.positionOf(entry.spec));
        }
    }
    if (inventoryLog().isEnabled(LogPriority::Debug)) {
        for (const RecordedProperties::Entry& entry : ahead.properties->entries()) {
            takeProperty(reader.positionOf(entry.spec));
        }
    }
    addDevice(std::exchange(ahead.device, nullptr), *ahead.properties);
}

void SysInfoReader::addDevice(const boost::shared_ptr<IDeviceImp>& device, const RecordedProperties& properties) {
    ++m_report.devices;
    m_hasMetOddities = m_hasMetOddities || device->type().isInvalid();
    m_report.properties += static_cast<std::uint32_t>(properties.entries().size());
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"populateStateManagerRecursive() adding device: " << device->guid());
    m_store.addDevice(device, nullptr);
}

// Contract: property specifications go to the process-wide store, whichever store receives the devices.
void SysInfoReader::registerSpec(std::uint32_t position) {
    m_isRegistered.resize(m_reader.specs().size());
    if (!m_isRegistered[position]) {
        m_isRegistered[position] = true;
        ++m_registered;
        StateManager::instance().addPropertySpec(m_reader.specs()[position]);
    }
}

void SysInfoReader::meetKey(std::uint32_t spec) {
    if (m_registered < m_reader.specs().size()) {
        registerSpec(spec);
    }
}

void SysInfoReader::takeProperty(std::uint32_t spec) {
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"populatePropertiesRecursive() adding property: " << m_reader.specs()[spec]->key());
}

void SysInfoReader::skipFrom(const XmlElement& property) {
    ImportReport::Skipped& skipped = m_report.skipped.emplace();
    const StringView key = property.Attribute(sysInfo::KEY);
    const XmlElement* const keyChild = key.empty() ? property.FirstChildElement(sysInfo::KEY_ITEM) : nullptr;
    skipped.key = keyChild ? keyChild->GetText() : String(key);
    skipped.text = property.Attribute(sysInfo::UNITS);
    skipped.device = m_report.devices;
    skipped.row = property.Row() + 1;
    skipped.column = property.Column() + 1;
    for (const XmlElement* next = property.NextSiblingElement(); next; next = next->NextSiblingElement()) {
        skipped.propertiesBehind += sysInfo::isProperty(next->Name()) ? 1U : 0U;
    }
    VRX_LOG(inventoryLog(), LogPriority::Error, skipped.line());
}

}  // namespace vrx
