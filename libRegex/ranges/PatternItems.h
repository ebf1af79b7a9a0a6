#pragma once

#include <cstddef>

#include "libCommon/text/String.h"

namespace vrx {

/// The end of the item of a regular expression that begins at `position`: an escape ("\d", "\cA"), a quoted text
/// ("\Q...\E"), a character class, a comment ("(?#...)"), or else the single unit there. What lies inside an item is
/// never the beginning of something else. Requires: position < pattern.size().
std::size_t patternItemEnd(StringView pattern, std::size_t position) noexcept;

}  // namespace vrx
