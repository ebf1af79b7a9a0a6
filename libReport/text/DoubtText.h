#pragma once

#include <string>
#include <string_view>

#include "libDiagnosis/certainty/Doubt.h"

namespace vrx {

/// What is in doubt and why, printable: `MemoryModule (dimm:A1) may be there: DMI could not be read (needs root)`.
std::string doubtText(const Doubt& doubt);

/// What a program calls it: "device", "forbidden", "extra", "property".
std::string_view nameOf(Doubt::Asked asked) noexcept;

/// "unread", "passedOver", "unknownType", "noNumber".
std::string_view nameOf(Doubt::Cause cause) noexcept;

}  // namespace vrx
