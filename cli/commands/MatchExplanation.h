#pragma once

#include <string>

#include "libCommon/text/String.h"

namespace vrx::cli {

/// Why a value does not match: what was compared with what, what would have to be different, and what about the
/// pattern looks mistyped. Lines with their ends, printable.
///
/// Requires: the two do not match.
std::string whyNoMatch(const String& pattern, const String& value);

}  // namespace vrx::cli
