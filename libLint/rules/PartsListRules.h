#pragma once

#include "libLint/LintRules.h"

/// What a parts list holds: parts, which have a name of their own and ask for a device.
namespace vrx::rules {

LintCheck elementBeforeParts;
LintCheck partBeforeParts;
LintCheck misnamedPart;
LintCheck missingName;
LintCheck duplicateName;
LintCheck blankPart;
LintCheck partNeedsNoDevice;

}  // namespace vrx::rules
