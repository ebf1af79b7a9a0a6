#pragma once

#include <vector>

#include "libCommon/text/String.h"

namespace vrx {

/// A property that an element asks for.
struct AskedProperty {
    String key;
    std::vector<String> patterns;  ///< none when any value will do; several for the entries of a list

    /// The one text that the property must be; empty when there may be others.
    String literal() const;
};

}  // namespace vrx
