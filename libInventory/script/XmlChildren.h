#pragma once

#include "libCommon/xml/XmlElement.h"

namespace vrx {

/// Range over the child elements of an element: `for (XmlElement* child : childElements(element))`. The next sibling is
/// looked up after the loop's body, so the body may add children to `child` but not unlink it.
class ChildElements {
public:
    class Iterator {
    public:
        explicit Iterator(XmlElement* at) noexcept : m_at(at) {}
        XmlElement* operator*() const noexcept { return m_at; }
        Iterator& operator++() noexcept {
            m_at = m_at->NextSiblingElement();
            return *this;
        }
        bool operator==(const Iterator&) const noexcept = default;

    private:
        XmlElement* m_at;
    };

    explicit ChildElements(XmlContainer& parent) noexcept : m_first(parent.FirstChildElement()) {}
    Iterator begin() const noexcept { return Iterator(m_first); }
    Iterator end() const noexcept { return Iterator(nullptr); }

private:
    XmlElement* m_first;
};

inline ChildElements childElements(XmlContainer& parent) noexcept { return ChildElements(parent); }
inline ChildElements childElements(XmlContainer* parent) noexcept { return ChildElements(*parent); }

}  // namespace vrx
