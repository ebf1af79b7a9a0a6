#include "libCommon/xml/XmlContent.h"

#include <new>

#include "libCommon/Assertion.h"
#include "libCommon/xml/XmlUtf8.h"

namespace vrx {

StringView XmlContent::keepUtf8(std::string_view bytes) {
    char16_t* const room = m_arena.roomForText(bytes.size());
    return m_arena.keepText(room, decodeValidUtf8(bytes, room));
}

XmlNode* XmlContent::copyOf(const XmlNode& node) {
    switch (node.NodeKind()) {
        case XmlNode::Kind::Element: return copyOf(static_cast<const XmlElement&>(node));
        case XmlNode::Kind::Text: return newText(m_arena.copy(node.Value()));
        case XmlNode::Kind::Comment: return newComment(m_arena.copy(node.Value()));
        case XmlNode::Kind::Document: break;
    }
    VRX_ASSERT(node.NodeKind() != XmlNode::Kind::Document);
    return nullptr;
}

XmlElement* XmlContent::copyOf(const XmlElement& element) {
    XmlElement* const copy = newElement(m_names.intern(element.Name()));
    copy->m_row = element.m_row;
    copy->m_column = element.m_column;
    copy->reserveAttributes(element.m_attributeCount, m_arena);
    for (const XmlAttribute& attribute : element.Attributes()) {
        copy->addAttribute(m_names.intern(attribute.Name()), m_arena.copy(attribute.Value()));
    }
    for (const XmlNode* child = element.FirstChild(); child != nullptr; child = child->NextSibling()) {
        copy->append(copyOf(*child));
    }
    return copy;
}

void XmlContent::copyAll(const XmlContainer& document) {
    for (const XmlNode* node = document.FirstChild(); node != nullptr; node = node->NextSibling()) {
        m_top.append(copyOf(*node));
    }
}

}  // namespace vrx
