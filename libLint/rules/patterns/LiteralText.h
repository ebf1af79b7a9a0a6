#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "libCommon/text/String.h"

namespace vrx {

inline bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// A pattern without its anchors.
struct AnchoredText {
    explicit AnchoredText(StringView pattern) noexcept;

    StringView body;
    bool isFromStart = false;
    bool isToEnd = false;
};

/// Where a text that looks like a plain one (a name, a version, a model) holds a sign of patterns that hardly is meant
/// as one: the parentheses of "Xeon(R)", the points of "2.14", the plus of "C++", the star of "WD*". Empty when the
/// text has none, or when anything else in it is a pattern on purpose. A guess from the look of it.
std::optional<std::size_t> unescapedSign(StringView body) noexcept;

/// The alternatives of a pattern, outside of groups; one when it has none.
std::vector<StringView> alternativesOf(StringView pattern);

/// Whether the text is a number and perhaps a unit, as it stands in a value.
bool isNumberText(StringView body) noexcept;

}  // namespace vrx
