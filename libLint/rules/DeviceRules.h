#pragma once

#include "libLint/LintFindings.h"

namespace vrx {

/// The type, the name and the locators of a `device`.
void checkDeviceAttributes(const XmlElement& device, LintFindings& findings);

/// What a `fail-on-extra` covers.
void checkExtraDeviceRule(const XmlElement& rule, LintFindings& findings);

}  // namespace vrx
