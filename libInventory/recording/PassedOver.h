#pragma once

#include "libCommon/Forward.h"

namespace vrx {

struct ImportReport;

/// Enters into the report what the import of the document with that root element made nothing of, or made something of
/// that no rule of a script can see: elements that seem to be devices, devices of unknown types, measurements without a
/// number. Requires: the document was parsed as a whole, so that all elements know their places.
void findPassedOver(XmlElement& root, ImportReport& report);

}  // namespace vrx
