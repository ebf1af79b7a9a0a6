#pragma once

#include "libLint/LintRules.h"

namespace vrx::rules {

/// What the machine meets only when devices are assigned exactly: a check by the greedy rule fails. Without a machine
/// this finds nothing.
LintCheck assignedExactly;

}  // namespace vrx::rules
