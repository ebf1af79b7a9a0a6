#pragma once

#include "libLint/LintRules.h"

/// What every element is looked at for: attributes and text that nothing reads; and the switches of the root.
namespace vrx::rules {

LintCheck unknownAttribute;
LintCheck deviceAttribute;
LintCheck repeatedType;
LintCheck textAsValue;
LintCheck ignoredText;
LintCheck flagValue;

}  // namespace vrx::rules
