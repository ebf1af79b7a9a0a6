#pragma once

#include <vector>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

/// What can be asked of one element of a script.
///
///     if (isNamed(element, vocabulary::DEVICE)) {
///         show(placeOf(&element), attributeOf(element, vocabulary::TYPE), askedFor(element, vocabulary::NAME));
///     }
namespace vrx {

/// Whether the element has that name, in any letter case.
inline bool isNamed(const XmlElement& element, StringView name) noexcept { return equalNoCase(element.Name(), name); }

/// The attribute of exactly that name, else the first whose name equals it without letter case; empty when absent.
VRX_EXPORT StringView attributeOf(const XmlElement& element, StringView name) noexcept;

/// The `device` element that the element is or lies in; null when there is none.
VRX_EXPORT const XmlElement* deviceAround(const XmlElement& element) noexcept;

/// Whether the element lies in a `not`.
VRX_EXPORT bool isUnderNot(const XmlElement& element) noexcept;

/// What a `device` element asks for with that attribute, decoded; empty where the root of the script switches it off.
VRX_EXPORT String askedFor(const XmlElement& device, StringView attribute);

/// The patterns that a `property` element asks for, decoded: those of its entries or, when it has none, its own. Empty
/// when it accepts any value. What a check has left in it does not count as an entry.
VRX_EXPORT std::vector<String> askedValues(const XmlElement& property);

/// "(row:column)", 1-based, of the element's place in the parsed script. Requires: element is not null.
VRX_EXPORT String placeOf(const XmlElement* element);

}  // namespace vrx
