#pragma once

#include "host/lint/LintFindings.h"

namespace vrx::host {

/// A pattern as an attribute of `element` holds it: whether it compiles, how it grows, and its ranges.
void checkPattern(const XmlElement& element, StringView written, LintFindings& findings);

}  // namespace vrx::host
