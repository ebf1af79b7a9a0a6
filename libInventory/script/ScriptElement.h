#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

/// What the host needs to know about elements of an inventory script.
namespace vrx {

/// Whether the element has that name, in any letter case.
inline bool isNamed(const XmlElement& element, StringView name) noexcept { return equalNoCase(element.Name(), name); }

/// The attribute of exactly that name, else the first whose name equals it without letter case; empty when absent.
StringView attributeOf(const XmlElement& element, StringView name) noexcept;

/// The `device` element that the element is or lies in; null when there is none.
const XmlElement* deviceAround(const XmlElement& element) noexcept;

/// What a `device` element asks for with that attribute, decoded; empty where the root of the script switches it off.
String askedFor(const XmlElement& device, StringView attribute);

/// "(row:column)", 1-based.
std::string placeOf(const XmlElement& element);

/// "file:row:column", 1-based, fit for a terminal.
std::string placeOf(const XmlElement& element, std::string_view file);

/// What a script asks for, counted over the elements that a check visits.
struct ScriptContent {
    std::size_t devices = 0;
    std::size_t extraDeviceRules = 0;
};
ScriptContent contentOf(const XmlElement& root);

}  // namespace vrx
