#pragma once

#include "libCommon/xml/XmlElement.h"

namespace vrx {

/// Range over the child elements of an element: `for (XmlElement* child : childElements(element))`, of constant ones
/// when the element is constant. The next sibling is looked up after the loop's body, so the body may add children to
/// `child` but not unlink it.
template <class Element>
class ChildElements {
public:
    class Iterator {
    public:
        explicit Iterator(Element* at) noexcept : m_at(at) {}
        Element* operator*() const noexcept { return m_at; }
        Iterator& operator++() noexcept {
            m_at = m_at->NextSiblingElement();
            return *this;
        }
        bool operator==(const Iterator&) const noexcept = default;

    private:
        Element* m_at;
    };

    explicit ChildElements(Element* first) noexcept : m_first(first) {}
    Iterator begin() const noexcept { return Iterator(m_first); }
    Iterator end() const noexcept { return Iterator(nullptr); }

private:
    Element* m_first;
};

inline ChildElements<XmlElement> childElements(XmlContainer& parent) noexcept {
    return ChildElements<XmlElement>(parent.FirstChildElement());
}
inline ChildElements<const XmlElement> childElements(const XmlContainer& parent) noexcept {
    return ChildElements<const XmlElement>(parent.FirstChildElement());
}
inline ChildElements<XmlElement> childElements(XmlContainer* parent) noexcept { return childElements(*parent); }

}  // namespace vrx
