#pragma once

#include <string>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlNode.h"

/// How a tree becomes text.
///
/// Compact: one line, no declaration, attributes in document order with double quotes, an element without children as
/// `<name/>`; `&` `<` `>` `"` escaped in attributes, `&` `<` `>` in text; tab, line feed and carriage return in
/// attributes as `&#9;` `&#10;` `&#13;` and carriage return in text as `&#13;`, so that a value survives a round trip.
/// A code unit that XML cannot hold is written as `%u` and four hexadecimal digits, and hyphens that a comment cannot
/// hold are kept apart by a blank: what is written is always well-formed, given that names are names.
///
/// Formatted: the same, one node a line, four blanks of indent a level, a line feed ends each line; an element whose
/// only child is text stands on one line.
///
///     std::string bytes;
///     writeFormatted(*document.RootElement(), 0, bytes);
namespace vrx {

/// Both append.
VRX_EXPORT void writeCompact(const XmlNode& node, std::string& utf8);
VRX_EXPORT void writeFormatted(const XmlNode& node, int depth, std::string& utf8);

VRX_EXPORT String compactText(const XmlNode& node);
VRX_EXPORT String formattedText(const XmlNode& node, int depth);

/// Text as it stands in element content and in an attribute value.
VRX_EXPORT String escapedText(StringView text);
VRX_EXPORT String escapedAttribute(StringView text);

}  // namespace vrx
