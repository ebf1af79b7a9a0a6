#pragma once

#include <cstddef>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// How many code units must be put in, taken out or replaced to turn one text into the other, with letter case. Costs
/// the product of the two lengths, so callers bound them.
VRX_EXPORT std::size_t editDistance(StringView a, StringView b);

}  // namespace vrx
