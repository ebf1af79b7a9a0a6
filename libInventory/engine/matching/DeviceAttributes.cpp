#include "libInventory/engine/matching/DeviceAttributes.h"

#include <cstring>

#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

namespace {

/// Nearly all names are written as the vocabulary has them.
bool isWord(StringView name, StringView word) noexcept {
    return name.size() == word.size() &&
           (std::memcmp(name.data(), word.data(), word.size() * sizeof(char16_t)) == 0 || equalNoCase(name, word));
}

}  // namespace

DeviceAttribute deviceAttributeOf(StringView name) noexcept {
    if (isWord(name, vocabulary::TYPE)) {
        return DeviceAttribute::Type;
    }
    if (isWord(name, vocabulary::NAME)) {
        return DeviceAttribute::Name;
    }
    if (isWord(name, vocabulary::OS_LOCATOR)) {
        return DeviceAttribute::OsLocator;
    }
    return isWord(name, vocabulary::HW_LOCATOR) ? DeviceAttribute::HwLocator : DeviceAttribute::Invalid;
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
