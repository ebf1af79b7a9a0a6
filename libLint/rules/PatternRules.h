#pragma once

#include "libLint/LintFindings.h"

namespace vrx {

/// A pattern as an attribute of `element` holds it: whether it compiles, how it grows, and its ranges.
void checkPattern(const XmlElement& element, StringView written, LintFindings& findings);

}  // namespace vrx
