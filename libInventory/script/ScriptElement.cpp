#include "libInventory/script/ScriptElement.h"

#include <fmt/format.h>

#include <initializer_list>
#include <utility>

#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

/// Attributes of devices, and those of the root that switch them off.
constexpr std::pair<StringView, StringView> SWITCHES[] = {
    {u"name", u"check-names"}, {u"hwlocator", u"check-hwLocators"}, {u"oslocator", u"check-osLocators"}};

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

void addContent(const XmlElement& element, ScriptContent& content) {
    if (isNamed(element, u"device")) {
        ++content.devices;
        return;
    }
    if (isNamed(element, u"fail-on-extra")) {
        ++content.extraDeviceRules;
        return;
    }
    for (const StringView name : {u"inventory-check", u"and", u"or", u"not", u"part"}) {
        if (isNamed(element, name)) {
            for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
                addContent(*child, content);
            }
            return;
        }
    }
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
        if (at != nullptr && isNamed(*at, u"device")) {
            return at;
        }
    }
    return nullptr;
}

String askedFor(const XmlElement& device, StringView attribute) {
    const StringView text = attributeOf(device, attribute);
    return text.empty() || isSwitchedOff(device, attribute) ? String() : String(text).uuDecode(true, true);
}

std::string placeOf(const XmlElement& element) {
    return fmt::format("({}:{})", element.Row() + 1, element.Column() + 1);
}

std::string placeOf(const XmlElement& element, std::string_view file) {
    return fmt::format("{}:{}:{}", printable(file), element.Row() + 1, element.Column() + 1);
}

ScriptContent contentOf(const XmlElement& root) {
    ScriptContent content;
    addContent(root, content);
    return content;
}

}  // namespace vrx
