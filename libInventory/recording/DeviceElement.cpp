#include "libInventory/recording/DeviceElement.h"

#include <utility>

#include "libCommon/xml/XmlElement.h"
#include "libInventory/recording/SysInfoStructure.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/devices/DeviceImp.h"

namespace vrx {

namespace {

void keepFirst(const XmlElement*& item, const XmlElement& child) noexcept {
    if (item == nullptr) {
        item = &child;
    }
}

bool hasItem(const XmlElement& device, const XmlElement* child, StringView attributeName) {
    return child != nullptr || device.FindAttribute(attributeName) != nullptr;
}

std::optional<String> itemText(const XmlElement& device, const XmlElement* child, StringView attributeName) {
    if (child != nullptr) {
        return child->GetText();
    }
    const XmlAttribute* const attribute = device.FindAttribute(attributeName);
    return attribute ? std::optional<String>(attribute->Value()) : std::nullopt;
}

}  // namespace

DeviceElement::DeviceElement(XmlElement& element) : m_element(element) {
    for (const XmlElement* child : childElements(element)) {
        if (!sysInfo::isProperty(child->Name())) {  // nearly all children are properties
            take(*child);
        }
    }
}

void DeviceElement::take(const XmlElement& child) {
    const StringView name = child.Name();
    if (name == sysInfo::TYPE_ITEM) {
        keepFirst(m_type, child);
    } else if (name == sysInfo::OS_LOCATOR_ITEM) {
        keepFirst(m_osLocator, child);
    } else if (name == sysInfo::HW_LOCATOR_ITEM) {
        keepFirst(m_hwLocator, child);
    } else if (name == sysInfo::NAME_ITEM) {
        keepFirst(m_name, child);
    } else if (name == sysInfo::CAPABILITY) {
        m_capabilities = m_capabilities | CapabilityImp(child.NormalizedText());
    } else if (sysInfo::isDevice(name) || name == sysInfo::SYS_INFO) {
        m_hasLists = true;
        m_hasDevices = m_hasDevices || name == sysInfo::DEVICE;
    }
}

bool DeviceElement::isComplete() const {
    return hasItem(m_element, m_osLocator, sysInfo::OS_LOCATOR) &&
           hasItem(m_element, m_hwLocator, sysInfo::HW_LOCATOR) && hasItem(m_element, m_name, sysInfo::NAME);
}

std::optional<String> DeviceElement::osLocator() const { return itemText(m_element, m_osLocator, sysInfo::OS_LOCATOR); }

std::optional<String> DeviceElement::hwLocator() const { return itemText(m_element, m_hwLocator, sysInfo::HW_LOCATOR); }

std::optional<String> DeviceElement::name() const { return itemText(m_element, m_name, sysInfo::NAME); }

CapabilityImp DeviceElement::type() const {
    const StringView type = m_element.Attribute(sysInfo::TYPE);
    return type.empty() && m_type != nullptr ? CapabilityImp(m_type->GetText()) : CapabilityImp(type);
}

boost::shared_ptr<IDeviceImp> DeviceElement::makeDevice(String name, String osLocator, String hwLocator,
                                                        std::unique_ptr<const RecordedProperties> properties) const {
    return DeviceImp::createRecorded(type(), m_capabilities, std::move(name), u"desc", std::move(osLocator),
                                     std::move(hwLocator), std::move(properties));
}

}  // namespace vrx
