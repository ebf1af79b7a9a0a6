#include "libInventory/script/ScriptElement.h"

#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

namespace {

/// Attributes of devices, and those of the root that switch them off.
constexpr std::pair<StringView, StringView> SWITCHES[] = {{vocabulary::NAME, vocabulary::CHECK_NAMES},
                                                          {vocabulary::HW_LOCATOR, vocabulary::CHECK_HW_LOCATORS},
                                                          {vocabulary::OS_LOCATOR, vocabulary::CHECK_OS_LOCATORS}};

bool isSwitchedOff(const XmlElement& device, StringView attribute) {
    const XmlNode* root = &device;
    while (root->Parent() != nullptr && root->Parent()->ToElement() != nullptr) {
        root = root->Parent();
    }
    for (const auto& [checked, flag] : SWITCHES) {
        const XmlAttribute* const found = root->ToElement()->FindAttribute(flag);
        if (attribute == checked && found != nullptr && !String(found->Value()).strToBoolean()) {
            return true;
        }
    }
    return false;
}

}  // namespace

StringView attributeOf(const XmlElement& element, StringView name) noexcept {
    if (const XmlAttribute* const exact = element.FindAttribute(name)) {
        return exact->Value();
    }
    for (const XmlAttribute& attribute : element.Attributes()) {
        if (equalNoCase(attribute.Name(), name)) {
            return attribute.Value();
        }
    }
    return {};
}

const XmlElement* deviceAround(const XmlElement& element) noexcept {
    const XmlNode* node = &element;
    for (; node != nullptr; node = node->Parent()) {
        const XmlElement* const at = node->ToElement();
        if (at != nullptr && vocabulary::kindOf(*at) == vocabulary::ElementKind::Device) {
            return at;
        }
    }
    return nullptr;
}

bool isUnderNot(const XmlElement& element) noexcept {
    for (const XmlNode* node = element.Parent(); node != nullptr; node = node->Parent()) {
        const XmlElement* const at = node->ToElement();
        if (at != nullptr && vocabulary::kindOf(*at) == vocabulary::ElementKind::Not) {
            return true;
        }
    }
    return false;
}

String askedFor(const XmlElement& device, StringView attribute) {
    const StringView text = attributeOf(device, attribute);
    return text.empty() || isSwitchedOff(device, attribute) ? String() : fromXmlSafe(text);
}

std::vector<String> askedValues(const XmlElement& property) {
    const auto decoded = [](StringView text) {
        return fromXmlSafe(text);
    };
    std::vector<String> values;
    for (const XmlElement* const entry : childElements(property)) {
        if (vocabulary::kindOf(*entry) != vocabulary::ElementKind::Error) {
            values.push_back(decoded(entry->Attribute(vocabulary::VALUE)));
        }
    }
    const XmlAttribute* const value = values.empty() ? property.FindAttribute(vocabulary::VALUE) : nullptr;
    if (value != nullptr) {
        values.push_back(decoded(value->Value()));
    }
    return values;
}

String placeOf(const XmlElement* element) {
    VRX_ASSERT(element);
    return concat(u"(", toText(std::uint64_t{element->Row()} + 1), u":", toText(std::uint64_t{element->Column()} + 1),
                  u")");
}

}  // namespace vrx
