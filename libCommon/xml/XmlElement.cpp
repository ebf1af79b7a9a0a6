#include "libCommon/xml/XmlElement.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <type_traits>

#include "libCommon/Assertion.h"
#include "libCommon/text/ShortText.h"
#include "libCommon/xml/XmlContent.h"
#include "libCommon/xml/XmlWriter.h"

namespace vrx {

static_assert(std::is_trivially_destructible_v<XmlName> && std::is_trivially_destructible_v<XmlAttribute>);
static_assert(std::is_trivially_copyable_v<XmlAttribute>);

const XmlAttribute* XmlElement::FindAttribute(StringView name) const noexcept {
    for (const XmlAttribute& attribute : Attributes()) {
        if (isSameText(attribute.Name(), name)) {
            return &attribute;
        }
    }
    return nullptr;
}

StringView XmlElement::Attribute(StringView name) const noexcept {
    const XmlAttribute* const attribute = FindAttribute(name);
    return attribute == nullptr ? StringView() : attribute->Value();
}

void XmlElement::SetAttribute(StringView name, StringView value) {
    VRX_ASSERT(value.size() <= std::numeric_limits<std::uint32_t>::max());
    const XmlName* const keptName = content().names().intern(name);
    const StringView keptValue = content().arena().copy(value);
    if (const XmlAttribute* const present = FindAttribute(name)) {
        m_attributes[present - m_attributes] = XmlAttribute(keptName, keptValue);
        return;
    }
    if (m_attributeCount == m_attributeCapacity) {
        reserveAttributes(std::max<std::size_t>(4, 2 * std::size_t{m_attributeCapacity}), content().arena());
    }
    addAttribute(keptName, keptValue);
}

String XmlElement::GetText() const {
    String text;
    for (const XmlNode* child = FirstChild(); child != nullptr; child = child->NextSibling()) {
        if (child->NodeKind() == Kind::Text) {
            text.append(child->Value());
        }
    }
    return text;
}

String XmlElement::NormalizedText() const { return GetText().trim(); }

String XmlElement::toString() const { return compactText(*this); }

void XmlElement::GetFormattedStr(String& out, int depth) const { out = formattedText(*this, depth); }

// The array is a new one each time; the one before stays behind in the arena.
void XmlElement::reserveAttributes(std::size_t count, XmlArena& arena) {
    if (count <= m_attributeCapacity) {
        return;
    }
    void* const memory = arena.allocate(count * sizeof(XmlAttribute), alignof(XmlAttribute));
    m_attributes = std::uninitialized_copy_n(m_attributes, m_attributeCount, static_cast<XmlAttribute*>(memory)) -
                   m_attributeCount;
    m_attributeCapacity = static_cast<std::uint32_t>(count);
}

}  // namespace vrx
