#pragma once

#include <cstddef>

#include "libCommon/text/String.h"

namespace vrx {

/// Hash of a text that somebody else holds, for tables whose keys are borrowed.
struct TextHash {
    std::size_t operator()(StringView text) const noexcept { return hashOf(text); }
};

}  // namespace vrx
