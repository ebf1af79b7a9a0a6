#pragma once

#include <optional>
#include <string>

#include "libCommon/text/String.h"

namespace vrx {

/// The bounds that a pattern of digits sets to a version or a whole number, in words: "at least 2.14" for
/// "^(2\.(1[4-9]|[2-9]\d)|[3-9])", "16..64", "at least 2.14, below 3". None for a pattern that is something else.
std::optional<std::string> patternBounds(StringView pattern);

}  // namespace vrx
