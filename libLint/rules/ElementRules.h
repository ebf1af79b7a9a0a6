#pragma once

#include "libLint/LintRules.h"

/// Elements that are passed over where they stand: misspelt, misplaced or left over from a report.
namespace vrx::rules {

LintCheck unknownElement;
LintCheck nestedRoot;
LintCheck misplacedElement;
LintCheck errorElement;
LintCheck propertyOutsideDevice;
LintCheck ignoredTestset;

}  // namespace vrx::rules
