#pragma once

#include "libLint/LintFindings.h"

namespace vrx {

/// A whole parts list: which elements count as parts, their names, what they hold.
void checkPartsList(const XmlElement& root, LintFindings& findings);

}  // namespace vrx
