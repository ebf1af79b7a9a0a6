#pragma once

#include <string>

#include "libDiagnosis/Fault.h"

namespace vrx {

/// What is wrong, in one line of printable text: `MemoryModule "M-32" (dimm:B3) is missing`. Every format of a check
/// takes its words from here.
std::string faultText(const Fault& fault);

/// The device or what is asked for: type, name in quotes, place.
std::string faultTitle(const Fault& fault);

}  // namespace vrx
