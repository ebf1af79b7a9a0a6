#pragma once

#include "libCommon/Export.h"
#include "libCommon/xml/XmlElement.h"

/// What the parts of a parts list are: the first `part` below the root and everything behind it, whatever its name.
///
///     for (const XmlElement* part = firstPart(root); part != nullptr; part = part->NextSiblingElement()) {
///         (describesDevices(*part) ? parts : blankParts).push_back(part);
///     }
namespace vrx {

/// The first part below the root; null when there is none.
VRX_EXPORT const XmlElement* firstPart(const XmlElement& root) noexcept;

/// Whether the part describes devices: one of its direct children is a `device`, `and`, `or` or `not`. One that does
/// not is blank.
VRX_EXPORT bool describesDevices(const XmlElement& part) noexcept;

}  // namespace vrx
