#pragma once

#include "libCommon/Export.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

struct ScriptPlace;

/// Whether the element is an `or` with alternatives that stands inside a `part`, between devices.
///
/// Such a script cannot be decided: the alternatives of a part are never merged into the combination that is tried, so
/// the engine would ask for devices that it does not know and fail hard.
///
///     if (const XmlElement* const element = findOrInsidePart(*inventory.script().RootElement())) {
///         show(placeOf(element), OR_INSIDE_PART_REASON);
///     }
VRX_EXPORT bool isUndecidableOr(const ScriptPlace& place) noexcept;

/// The first such `or` where a check looks; null when there is none.
VRX_EXPORT const XmlElement* findOrInsidePart(const XmlElement& root);

/// What to say about it, without its place.
inline constexpr const char* OR_INSIDE_PART_REASON =
    "an <or> inside a <part> cannot be decided; expected the <or> around the parts, one part for each alternative";

}  // namespace vrx
