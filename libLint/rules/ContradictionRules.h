#pragma once

#include "libLint/LintRules.h"

/// Elements that get in each other's way: what one asks for, another excludes or takes.
namespace vrx::rules {

LintCheck excludingProperties;
LintCheck requiredAndForbiddenProperty;
LintCheck requiredAndForbiddenDevice;
LintCheck wideBeforeNarrow;
LintCheck notAroundSeveral;

}  // namespace vrx::rules
