#pragma once

#include <cstddef>
#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

/// Hash of texts of either width that somebody else holds, for tables whose keys are borrowed or bytes.
struct TextHash {
    using is_avalanching = void;  // every bit of the text changes about half of the bits of its hash
    std::size_t operator()(StringView text) const noexcept { return hashOf(text); }
    std::size_t operator()(std::string_view bytes) const noexcept { return hashOf(bytes); }
};

}  // namespace vrx
