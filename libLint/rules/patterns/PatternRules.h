#pragma once

#include "libLint/LintRules.h"

/// Patterns are compared after decoding, so they are judged decoded too.
namespace vrx::rules {

LintCheck emptyPattern;
LintCheck patternSyntax;
LintCheck patternExplodes;

}  // namespace vrx::rules
