#pragma once

#include <expat.h>

#include "libCommon/text/String.h"

namespace vrx {

class XmlSource;
class XmlTreeBuilder;

/// What the parser library failed on, in its own words ("mismatched tag"), with what helps to mend it where that is
/// known ("expected </device> for line 3"; lines in descriptions are 1-based).
/// Requires: the place that the source was asked for last is that of the error.
String describeError(XML_Error code, const XmlSource& source, const XmlTreeBuilder& builder);

}  // namespace vrx
