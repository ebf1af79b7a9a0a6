#pragma once

#include <span>
#include <string>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The name that is at most two letters away, in any letter case; empty when there is none.
VRX_EXPORT StringView nearestName(StringView written, std::span<const StringView> names);

/// "; did you mean X?" with the nearest name; empty when there is none.
VRX_EXPORT std::string suggestion(StringView written, std::span<const StringView> names);

}  // namespace vrx
