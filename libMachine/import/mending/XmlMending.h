#pragma once

#include <string_view>

#include "libCommon/xml/XmlDocument.h"
#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// The element that mending puts where a text was cut off, inside all that was open there.
inline constexpr StringView CUT_OFF_ELEMENT = u"cut-off";

/// Parses XML that may be damaged. Text that parses is taken as it is. Any other is mended first: what was cut off or
/// left open is closed, tags that make no sense are left out, several roots get one around them, which is called
/// "list"; each is counted. A document type declaration is dropped without a word. False when no element is left.
///
/// Requires: the text went through mendedText.
bool parseMended(std::string_view text, XmlDocument& document, DamageList& damage);

}  // namespace vrx
