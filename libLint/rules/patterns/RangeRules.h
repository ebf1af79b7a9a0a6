#pragma once

#include "libLint/LintRules.h"

/// Ranges: their marker, their bounds, and the unit behind them.
namespace vrx::rules {

LintCheck rangeWord;
LintCheck rangeSyntax;
LintCheck rangeUnitBlank;
LintCheck rangeUnit;
LintCheck rangeSingleValue;

}  // namespace vrx::rules
