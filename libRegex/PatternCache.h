#pragma once

#include "libRegex/CompiledPattern.h"

namespace vrx {

/// The pattern made ready for use: the calling thread's cached one, or a new one. Patterns that do not compile are kept
/// like any other. Valid until the calling thread asks for another pattern.
CompiledPattern& cachedPattern(StringView pattern, LetterCase letterCase);

}  // namespace vrx
