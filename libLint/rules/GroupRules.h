#pragma once

#include "libLint/LintRules.h"

/// Groups: `and`, `or`, `not` and `part`, between devices and inside one.
namespace vrx::rules {

LintCheck notUnderNot;
LintCheck notUnderNotInDevice;
LintCheck emptyOr;
LintCheck emptyOrInDevice;
LintCheck emptyGroup;
LintCheck emptyAndInDevice;
LintCheck emptyNotInDevice;
LintCheck equalAlternatives;
LintCheck orInsidePart;
LintCheck nestedPart;
LintCheck nothingToCheck;
LintCheck combinations;
LintCheck manyCombinations;

}  // namespace vrx::rules
