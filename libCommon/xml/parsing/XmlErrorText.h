#pragma once

#include <expat.h>

#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

class XmlTreeBuilder;

/// What the parser library failed on, in its own words ("mismatched tag"), with what helps to mend it where that is
/// known ("expected </device> for line 3"; lines in descriptions are 1-based).
/// `rest` is the text from the error on, as far as it is at hand.
String describeError(XML_Error code, std::string_view rest, const XmlTreeBuilder& builder);

}  // namespace vrx
