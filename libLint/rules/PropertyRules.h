#pragma once

#include "libLint/LintFindings.h"

namespace vrx {

/// A `property` inside a device, with the children that hold the entries of its value.
void checkProperty(const XmlElement& property, LintFindings& findings);

}  // namespace vrx
