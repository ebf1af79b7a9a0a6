#pragma once

#include "libCommon/text/String.h"

namespace vrx {

/// The pattern as the literal text that it may be instead: without the anchors at its ends.
inline StringView withoutAnchors(StringView pattern) noexcept {
    if (pattern.starts_with(u'^')) {
        pattern.remove_prefix(1);
    }
    if (pattern.ends_with(u'$')) {
        pattern.remove_suffix(1);
    }
    return pattern;
}

}  // namespace vrx
