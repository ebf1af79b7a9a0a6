#pragma once

#include "libLint/LintFindings.h"

namespace vrx {

/// Everything inside a `device` or a `fail-on-extra`: properties and the groups between them.
void checkDeviceContent(const XmlElement& holder, bool isUnderNot, LintFindings& findings);

}  // namespace vrx
