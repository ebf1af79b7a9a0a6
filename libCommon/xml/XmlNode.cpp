#include "libCommon/xml/XmlNode.h"

#include "libCommon/Assertion.h"
#include "libCommon/text/ShortText.h"
#include "libCommon/xml/XmlContent.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

namespace {

/// The first element of that name from `element` on, among it and its later siblings.
const XmlElement* elementFrom(const XmlElement* element, StringView name) noexcept {
    while (element != nullptr && !isSameText(element->Name(), name)) {
        element = element->NextSiblingElement();
    }
    return element;
}

/// For operations that exist for constant and for other nodes: the node that was asked was not constant.
XmlElement* mutableElement(const XmlElement* element) noexcept { return const_cast<XmlElement*>(element); }

}  // namespace

XmlElement* XmlNode::NextSiblingElement(StringView name) noexcept {
    return mutableElement(elementFrom(NextSiblingElement(), name));
}

const XmlElement* XmlNode::NextSiblingElement(StringView name) const noexcept {
    return elementFrom(NextSiblingElement(), name);
}

StringView XmlNode::Value() const noexcept {
    switch (m_kind) {
        case Kind::Element: return static_cast<const XmlElement*>(this)->Name();
        case Kind::Text: return static_cast<const XmlText*>(this)->Text();
        case Kind::Comment: return static_cast<const XmlComment*>(this)->Text();
        case Kind::Document: break;
    }
    return {};
}

XmlDocument& XmlNode::Document() const {
    VRX_ASSERT(m_content->owner() != nullptr);
    return *m_content->owner();
}

XmlElement* XmlContainer::FirstChildElement(StringView name) noexcept {
    return mutableElement(elementFrom(FirstChildElement(), name));
}

const XmlElement* XmlContainer::FirstChildElement(StringView name) const noexcept {
    return elementFrom(FirstChildElement(), name);
}

void XmlContainer::LinkEndChild(XmlNode* node) {
    VRX_ASSERT(node != nullptr);
    VRX_ASSERT(node->m_content == m_content);
    VRX_ASSERT(node->m_parent == nullptr);
    VRX_ASSERT(node != this && node->m_kind != Kind::Document);
    append(node);
}

void XmlContainer::append(XmlNode* node) noexcept {
    node->m_parent = this;
    XmlNode*& link = m_lastChild == nullptr ? m_firstChild : m_lastChild->m_next;
    link = node;
    m_lastChild = node;
}

void XmlContainer::removeFirstChild() noexcept {
    m_firstChild = m_firstChild->m_next;
    m_lastChild = m_firstChild == nullptr ? nullptr : m_lastChild;
}

void XmlContainer::takeChildren(XmlContainer& other) noexcept {
    for (XmlNode* child = other.m_firstChild; child != nullptr; child = child->m_next) {
        child->m_parent = this;
    }
    if (other.m_firstChild != nullptr) {
        (m_lastChild == nullptr ? m_firstChild : m_lastChild->m_next) = other.m_firstChild;
        m_lastChild = other.m_lastChild;
    }
    other.removeChildren();
}

}  // namespace vrx
