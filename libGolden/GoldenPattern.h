#pragma once

#include "libGolden/GoldenDecision.h"

namespace vrx {

/// Matches exactly this text. Unlike in other generated scripts a pipe stands for itself.
String exactPattern(StringView text);

/// What the script asks for where one pattern says it. Requires: it is asked for, and no variant is a list.
String patternOf(const GoldenDecision& decision);

}  // namespace vrx
