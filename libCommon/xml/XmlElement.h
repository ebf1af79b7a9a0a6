#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlNode.h"

namespace vrx {

class XmlArena;

/// A name that a document has met; each distinct name is stored once per document.
struct XmlName {
    StringView text;
    const char* utf8 = "";  ///< the same, zero-terminated; empty for a name that no parser has met
};

/// One attribute. Name and value are borrowed from the document and valid as long as it is.
class XmlAttribute {
public:
    XmlAttribute() = default;
    XmlAttribute(const XmlName* name, StringView value) noexcept
        : m_name(name), m_value(value.data()), m_size(static_cast<std::uint32_t>(value.size())) {}
    StringView Name() const noexcept { return m_name->text; }
    StringView Value() const noexcept { return StringView(m_value, m_size); }

private:
    const XmlName* m_name = nullptr;
    const char16_t* m_value = nullptr;
    std::uint32_t m_size = 0;
};

/// An element: a name, attributes in document order, child nodes, and its place in the parsed text.
/// Attribute names are exact. All texts that it hands out are borrowed from the document.
///
///     XmlElement* const device = document.NewElement(u"device");
///     device->SetAttribute(u"type", u"Fan");
///     document.RootElement()->LinkEndChild(device);
///     device->toString();                                // <device type="Fan"/>
class VRX_EXPORT XmlElement : public XmlContainer {
public:
    StringView Name() const noexcept { return m_name->text; }

    /// The attributes in document order.
    std::span<const XmlAttribute> Attributes() const noexcept { return {m_attributes, m_attributeCount}; }

    /// The attribute of exactly that name; null when absent.
    const XmlAttribute* FindAttribute(StringView name) const noexcept;

    /// The attribute's value; empty when absent.
    StringView Attribute(StringView name) const noexcept;

    /// The attribute's value as XML normalises it (which parsing has done already); empty when absent.
    StringView NormalizedAttributeValue(StringView name) const noexcept { return Attribute(name); }

    /// Sets an attribute: replaces the value, or adds it after the others.
    void SetAttribute(StringView name, StringView value);

    /// All text directly inside the element, whole.
    String GetText() const;

    /// All text directly inside the element, without white space at both ends.
    String NormalizedText() const;

    /// 0-based line of the element's `<` in the parsed text; 0 for an element that was not parsed.
    std::uint32_t Row() const noexcept { return m_row; }

    /// 0-based column of its `<`, in UTF-16 code units; a tab counts as one. 0 for an element that was not parsed.
    std::uint32_t Column() const noexcept { return m_column; }

    /// The element as compact XML on one line, without declaration (see xml/XmlWriter.h).
    String toString() const;

    /// Replaces `out` by the element as indented XML, one node a line; `depth` is the level of indent that it starts
    /// at.
    void GetFormattedStr(String& out, int depth) const;

private:
    friend class XmlNode;
    friend class XmlContainer;
    friend class XmlContent;
    friend class XmlTreeBuilder;
    friend class XmlPieceParser;
    XmlElement(XmlContent* content, const XmlName* name) noexcept
        : XmlContainer(Kind::Element, content), m_name(name) {}
    void reserveAttributes(std::size_t count, XmlArena& arena);

    /// The first element from `node` on, among it and its later siblings.
    static const XmlElement* from(const XmlNode* node) noexcept {
        while (node != nullptr && node->NodeKind() != Kind::Element) {
            node = node->NextSibling();
        }
        return static_cast<const XmlElement*>(node);
    }
    static XmlElement* from(XmlNode* node) noexcept {
        return const_cast<XmlElement*>(from(const_cast<const XmlNode*>(node)));
    }

    /// Forgets the attributes and children.
    void clear() noexcept {
        m_attributes = nullptr;
        m_attributeCount = 0;
        m_attributeCapacity = 0;
        removeChildren();
    }

    void addAttribute(const XmlName* name, StringView keptValue) {
        m_attributes[m_attributeCount++] = XmlAttribute(name, keptValue);
    }

    const XmlName* m_name;
    XmlAttribute* m_attributes = nullptr;
    std::uint32_t m_attributeCount = 0;
    std::uint32_t m_attributeCapacity = 0;
    std::uint32_t m_row = 0;
    std::uint32_t m_column = 0;
};

/// Text between tags. Text of nothing but white space between elements is not kept when parsing.
class VRX_EXPORT XmlText : public XmlNode {
public:
    StringView Text() const noexcept { return StringView(m_text, m_size); }

private:
    friend class XmlContent;
    XmlText(XmlContent* content, StringView text) noexcept
        : XmlNode(Kind::Text, content), m_size(static_cast<std::uint32_t>(text.size())), m_text(text.data()) {}
    std::uint32_t m_size;  // first, where it fills the padding behind the base class
    const char16_t* m_text;
};

/// A comment.
class VRX_EXPORT XmlComment : public XmlNode {
public:
    StringView Text() const noexcept { return StringView(m_text, m_size); }

private:
    friend class XmlContent;
    XmlComment(XmlContent* content, StringView text) noexcept
        : XmlNode(Kind::Comment, content), m_size(static_cast<std::uint32_t>(text.size())), m_text(text.data()) {}
    std::uint32_t m_size;  // first, where it fills the padding behind the base class
    const char16_t* m_text;
};

inline XmlElement* XmlNode::ToElement() noexcept {
    return m_kind == Kind::Element ? static_cast<XmlElement*>(this) : nullptr;
}

inline const XmlElement* XmlNode::ToElement() const noexcept {
    return m_kind == Kind::Element ? static_cast<const XmlElement*>(this) : nullptr;
}

inline XmlElement* XmlNode::NextSiblingElement() noexcept { return XmlElement::from(m_next); }

inline const XmlElement* XmlNode::NextSiblingElement() const noexcept { return XmlElement::from(m_next); }

inline XmlElement* XmlContainer::FirstChildElement() noexcept { return XmlElement::from(m_firstChild); }

inline const XmlElement* XmlContainer::FirstChildElement() const noexcept { return XmlElement::from(m_firstChild); }

}  // namespace vrx
