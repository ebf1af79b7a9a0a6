#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

class XmlContainer;
class XmlElement;
class XmlDocument;
class XmlContent;

// What asks for elements is defined with them, inline: walks over a document do hardly anything else. To call it,
// include xml/XmlElement.h.

/// One node of a document. Nodes live in the memory of their document: they are made by it (`XmlDocument::NewElement`,
/// `NewText`, `NewComment`), linked under nodes of the same document, never deleted one by one, and all gone when the
/// document is cleared or destroyed. That makes a document of a million elements cheap to build and to drop.
///
///     for (const XmlNode* node = element.FirstChild(); node != nullptr; node = node->NextSibling()) {
///         if (const XmlElement* const child = node->ToElement()) {
///             show(child->Name());
///         }
///     }
class VRX_EXPORT XmlNode {
public:
    enum class Kind : std::uint8_t { Document, Element, Text, Comment };

    XmlNode(const XmlNode&) = delete;
    XmlNode& operator=(const XmlNode&) = delete;

    Kind NodeKind() const noexcept { return m_kind; }

    /// The node as an element; null when it is none.
    inline XmlElement* ToElement() noexcept;
    inline const XmlElement* ToElement() const noexcept;

    XmlContainer* Parent() noexcept { return m_parent; }
    const XmlContainer* Parent() const noexcept { return m_parent; }

    XmlNode* NextSibling() noexcept { return m_next; }
    const XmlNode* NextSibling() const noexcept { return m_next; }

    /// The next sibling that is an element (of exactly that name, when one is given); null when there is none.
    inline XmlElement* NextSiblingElement() noexcept;
    inline const XmlElement* NextSiblingElement() const noexcept;
    XmlElement* NextSiblingElement(StringView name) noexcept;
    const XmlElement* NextSiblingElement(StringView name) const noexcept;

    /// One pointer that belongs to whoever uses the document; the document never follows or frees it.
    void* GetUserData() const noexcept { return m_userData; }
    void SetUserData(void* data) noexcept { m_userData = data; }

    /// Text of a text node or comment, name of an element; empty for a document.
    StringView Value() const noexcept;

    /// The document that made the node, wherever it has been moved to since. Requires: it still holds the node.
    XmlDocument& Document() const;

protected:
    XmlNode(Kind kind, XmlContent* content) noexcept : m_content(content), m_kind(kind) {}
    ~XmlNode() = default;
    XmlContent& content() const noexcept { return *m_content; }

private:
    friend class XmlContainer;
    XmlContainer* m_parent = nullptr;
    XmlNode* m_next = nullptr;
    void* m_userData = nullptr;
    XmlContent* m_content;
    Kind m_kind;
};

/// A node that has children: an element or the document itself.
class VRX_EXPORT XmlContainer : public XmlNode {
public:
    XmlNode* FirstChild() noexcept { return m_firstChild; }
    const XmlNode* FirstChild() const noexcept { return m_firstChild; }

    /// The first child that is an element (of exactly that name, when one is given); null when there is none.
    inline XmlElement* FirstChildElement() noexcept;
    inline const XmlElement* FirstChildElement() const noexcept;
    XmlElement* FirstChildElement(StringView name) noexcept;
    const XmlElement* FirstChildElement(StringView name) const noexcept;

    bool NoChildren() const noexcept { return m_firstChild == nullptr; }

    /// Adds a node as the last child. Requires: the node was made by the same document and has no parent.
    void LinkEndChild(XmlNode* node);

protected:
    XmlContainer(Kind kind, XmlContent* content) noexcept : XmlNode(kind, content) {}
    ~XmlContainer() = default;
    void removeChildren() noexcept { m_firstChild = m_lastChild = nullptr; }

private:
    friend class XmlContent;
    friend class XmlTreeBuilder;
    friend class XmlPieceParser;
    void append(XmlNode* node) noexcept;

    /// Adds all children of another node of the same document, which loses them.
    void takeChildren(XmlContainer& other) noexcept;

    /// Requires: there is one.
    void removeFirstChild() noexcept;

    XmlNode* m_firstChild = nullptr;
    XmlNode* m_lastChild = nullptr;
};

}  // namespace vrx
