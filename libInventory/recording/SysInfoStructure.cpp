#include "libInventory/recording/SysInfoStructure.h"

#include <algorithm>
#include <iterator>

#include "libCommon/text/EditDistance.h"
#include "libCommon/text/ShortText.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/recording/SysInfoVocabulary.h"

namespace vrx::sysInfo {

namespace {

constexpr StringView MEANINGFUL[] = {VALUE,     VALUE_UPPER, CAPABILITY,      KEY_ITEM,
                                     TYPE_ITEM, NAME_ITEM,   HW_LOCATOR_ITEM, OS_LOCATOR_ITEM,
                                     SYS_INFO,  PROPERTY,    UNREAD_SOURCE,   PROPERTY_UPPER};

bool hasType(const XmlElement& element) {
    return element.FindAttribute(TYPE) != nullptr || element.FirstChildElement(TYPE_ITEM) != nullptr;
}

bool hasLocator(const XmlElement& element) {
    return element.FindAttribute(HW_LOCATOR) != nullptr || element.FindAttribute(OS_LOCATOR) != nullptr ||
           element.FirstChildElement(HW_LOCATOR_ITEM) != nullptr ||
           element.FirstChildElement(OS_LOCATOR_ITEM) != nullptr;
}

}  // namespace

bool isDevice(StringView elementName) noexcept {
    return isSameText(elementName, DEVICE) || isSameText(elementName, DEVICE_LOWER);
}

bool isProperty(StringView elementName) noexcept {
    return isSameText(elementName, PROPERTY) || isSameText(elementName, PROPERTY_UPPER);
}

XmlElement* firstDeviceOf(XmlElement& parent) {
    for (XmlElement* list = parent.FirstChildElement(SYS_INFO); list; list = list->NextSiblingElement(SYS_INFO)) {
        if (XmlElement* const device = list->FirstChildElement(DEVICE)) {
            return device;
        }
    }
    XmlElement* const device = parent.FirstChildElement(DEVICE);
    return device ? device : parent.FirstChildElement(DEVICE_LOWER);
}

// Contract: the first `property` wins over any `Property`, also over one that stands before it and is then skipped.
XmlElement* firstPropertyOf(XmlElement& parent) {
    XmlElement* const property = parent.FirstChildElement(PROPERTY);
    return property ? property : parent.FirstChildElement(PROPERTY_UPPER);
}

bool looksLikeDevice(const XmlElement& element) {
    constexpr std::size_t LONGEST = 10;  // a longer name has nothing to do with "device"
    const StringView name = element.Name();
    if (std::find(std::begin(MEANINGFUL), std::end(MEANINGFUL), name) != std::end(MEANINGFUL)) {
        return false;
    }
    if (hasLocator(element)) {
        return true;
    }
    const std::size_t slips = name.size() > LONGEST ? LONGEST : editDistance(foldCase(name), DEVICE_LOWER);
    return slips == 0 || (slips <= 2 && (hasType(element) || (slips == 1 && element.FirstChildElement() == nullptr)));
}

}  // namespace vrx::sysInfo
