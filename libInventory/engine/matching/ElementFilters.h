#pragma once

#include <boost/container/small_vector.hpp>
#include <forward_list>
#include <span>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

struct InventoryState;

/// One thing that an attribute of a `device` element asks for.
struct ElementFilter {
    enum class Kind { Name, OsLocator, HwLocator };

    Kind kind;
    const XmlAttribute* attribute;
    StringView value;  ///< decoded
};

/// The filters of an element's attributes, in order. Borrows from the element wherever decoding changes nothing.
class ElementFilters {
public:
    ElementFilters(const XmlElement& element, const InventoryState& state);
    ElementFilters(const ElementFilters&) = delete;
    ElementFilters& operator=(const ElementFilters&) = delete;

    std::span<const ElementFilter> all() const noexcept { return m_filters; }

    /// The first attribute that devices do not have; later ones do not count. Null when there is none.
    const XmlAttribute* invalid() const noexcept { return m_invalid; }

private:
    void add(ElementFilter::Kind kind, const XmlAttribute& attribute);

    boost::container::small_vector<ElementFilter, 3> m_filters;
    std::forward_list<String> m_decodedTexts;
    const XmlAttribute* m_invalid = nullptr;
};

}  // namespace vrx
