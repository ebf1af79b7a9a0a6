#include "libDiagnosis/faults/AskedDevice.h"

#include <algorithm>
#include <iterator>

#include "libCommon/text/UuCode.h"
#include "libCommon/xml/XmlWriter.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libRegex/Regex.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

void addProperties(const XmlElement& group, std::vector<AskedProperty>& properties) {
    for (const XmlElement* const child : childElements(group)) {
        const ElementKind kind = vocabulary::kindOf(*child);
        if (kind == ElementKind::Property) {
            properties.push_back({fromXmlSafe(attributeOf(*child, vocabulary::KEY)), askedValues(*child)});
        } else if (kind == ElementKind::And) {
            addProperties(*child, properties);
        }
    }
}

void appendContent(const XmlElement& element, String& xml) {
    for (const XmlElement* const child : childElements(element)) {
        if (vocabulary::kindOf(*child) == ElementKind::Error) {
            continue;
        }
        xml.append(u'<').append(child->Name());
        for (const XmlAttribute& attribute : child->Attributes()) {
            xml.append(u' ').append(attribute.Name()).append(u"=\"");
            xml.append(escapedAttribute(attribute.Value())).append(u'"');
        }
        xml.append(u'>');
        appendContent(*child, xml);
        xml.append(u"</").append(child->Name()).append(u'>');
    }
}

}  // namespace

String AskedProperty::literal() const {
    String text;
    return patterns.size() == 1 && Regex::isAnchoredLiteral(patterns.front(), text) ? text : String();
}

std::vector<AskedProperty> askedProperties(const XmlElement& device) {
    std::vector<AskedProperty> properties;
    addProperties(device, properties);
    return properties;
}

bool isIdentity(StringView key) noexcept {
    static constexpr StringView KEYS[] = {property::SERIAL_NUMBER, property::UUID, property::WWN, property::ADDRESS,
                                          property::NODE_GUID};
    return std::ranges::find(KEYS, key) != std::end(KEYS);
}

String contentOfDevice(const XmlElement& device) {
    String content;
    appendContent(device, content);
    return content;
}

const XmlElement* partAround(const XmlElement& element) noexcept {
    for (const XmlContainer* at = element.Parent(); at != nullptr; at = at->Parent()) {
        const XmlElement* const around = at->ToElement();
        if (around != nullptr && vocabulary::kindOf(*around) == ElementKind::Part) {
            return around;
        }
    }
    return nullptr;
}

}  // namespace vrx
