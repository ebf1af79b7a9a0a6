#pragma once

#include "libCommon/text/String.h"

namespace vrx {

class XmlElement;

/// "(" row ":" column ")", both 1-based, of the element's place in the parsed script. Requires: element is not null.
String locationOf(const XmlElement* element);

}  // namespace vrx
