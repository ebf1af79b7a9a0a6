#pragma once

#include "host/lint/LintFindings.h"

namespace vrx::host {

/// A `property` inside a device, with the children that hold the entries of its value.
void checkProperty(const XmlElement& property, LintFindings& findings);

}  // namespace vrx::host
