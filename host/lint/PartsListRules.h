#pragma once

#include "host/lint/LintFindings.h"

namespace vrx::host {

/// A whole parts list: which elements count as parts, their names, what they hold.
void checkPartsList(const XmlElement& root, LintFindings& findings);

}  // namespace vrx::host
