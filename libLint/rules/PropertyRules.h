#pragma once

#include "libLint/LintRules.h"

/// A property is compared with its `value` attribute or, when it has children of any name, with their `value`
/// attributes, one for each entry, and then not with its own. Its units are not compared at all.
namespace vrx::rules {

LintCheck missingKey;
LintCheck blankKey;
LintCheck valueBesideChildren;
LintCheck elementAsValue;
LintCheck elementInEntry;
LintCheck valueMissing;
LintCheck unitsMissingInPattern;
LintCheck unitsNotCompared;

}  // namespace vrx::rules
