#pragma once

#include "libLint/LintRules.h"

/// What a machine could never meet. Without a machine these find nothing. What a script forbids, or asks for as one of
/// several alternatives, may well be absent; there only what looks misspelt is told.
namespace vrx::rules {

LintCheck typeNobodyHas;
LintCheck locatorNobodyHas;
LintCheck keyNobodyHas;
LintCheck unitsOfAnotherKind;

}  // namespace vrx::rules
