#include "libInventory/engine/matching/DeviceAttributes.h"

#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

DeviceAttribute deviceAttributeOf(StringView name) noexcept {
    if (equalNoCase(name, vocabulary::TYPE)) {
        return DeviceAttribute::Type;
    }
    if (equalNoCase(name, vocabulary::NAME)) {
        return DeviceAttribute::Name;
    }
    if (equalNoCase(name, vocabulary::OS_LOCATOR)) {
        return DeviceAttribute::OsLocator;
    }
    return equalNoCase(name, vocabulary::HW_LOCATOR) ? DeviceAttribute::HwLocator : DeviceAttribute::Invalid;
}

StringView typeTextOf(const XmlElement& device) {
    if (const XmlAttribute* const exact = device.FindAttribute(vocabulary::TYPE)) {
        return exact->Value();
    }
    for (const XmlAttribute& attribute : device.Attributes()) {
        if (equalNoCase(attribute.Name(), vocabulary::TYPE)) {
            return attribute.Value();
        }
    }
    return StringView();
}

}  // namespace vrx
