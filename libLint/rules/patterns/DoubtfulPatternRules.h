#pragma once

#include "libLint/LintRules.h"

/// Patterns that mean something else than they look like.
namespace vrx::rules {

LintCheck unescapedSignInText;
LintCheck missingAnchor;
LintCheck blankAtAnchor;
LintCheck comparisonSign;
LintCheck boundsWithoutMarker;
LintCheck looseAlternatives;
LintCheck severalRanges;

}  // namespace vrx::rules
