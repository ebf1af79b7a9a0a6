#pragma once

#include "libCommon/text/String.h"

namespace vrx {

/// Whether matching the pattern may take work that grows exponentially with the value: something that is repeated
/// without bound holds something that is repeated without bound, and nothing in between tells the rounds apart, as in
/// `(a+)+` or `(.*,)*`. A guess from the look of the pattern; some bad ones are missed (`(a|a)*`).
bool canExplode(StringView pattern);

}  // namespace vrx
