#include "libCommon/xml/XmlContent.h"

#include <new>

#include "libCommon/Assertion.h"
#include "libCommon/xml/XmlUtf8.h"

namespace vrx {

StringView XmlContent::keepUtf8(std::string_view bytes) {
    char16_t* const room = m_arena.roomForText(bytes.size());
    return m_arena.keepText(room, decodeValidUtf8(bytes, room));
}

XmlElement* XmlContent::copyOf(const XmlElement& element) {
    XmlNameCopies names(m_names);
    return copyOf(element, names);
}

XmlNode* XmlContent::copyOf(const XmlNode& node, XmlNameCopies& names) {
    switch (node.NodeKind()) {
        case XmlNode::Kind::Element: return copyOf(static_cast<const XmlElement&>(node), names);
        case XmlNode::Kind::Text: return newText(m_arena.copy(node.Value()));
        case XmlNode::Kind::Comment: return newComment(m_arena.copy(node.Value()));
        case XmlNode::Kind::Document: break;
    }
    VRX_ASSERT(node.NodeKind() != XmlNode::Kind::Document);
    return nullptr;
}

XmlElement* XmlContent::copyOf(const XmlElement& element, XmlNameCopies& names) {
    XmlElement* const copy = newElement(names.find(element.Name()));
    copy->m_row = element.m_row;
    copy->m_column = element.m_column;
    copy->reserveAttributes(element.m_attributeCount, m_arena);
    for (const XmlAttribute& attribute : element.Attributes()) {
        copy->addAttribute(names.find(attribute.Name()), m_arena.copy(attribute.Value()));
    }
    for (const XmlNode* child = element.FirstChild(); child != nullptr; child = child->NextSibling()) {
        copy->append(copyOf(*child, names));
    }
    return copy;
}

void XmlContent::copyAll(const XmlContainer& document) {
    XmlNameCopies names(m_names);
    for (const XmlNode* node = document.FirstChild(); node != nullptr; node = node->NextSibling()) {
        m_top.append(copyOf(*node, names));
    }
}

}  // namespace vrx
