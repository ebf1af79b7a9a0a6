#pragma once

#include <string>

#include "libCommon/text/String.h"

namespace vrx {

/// A pattern of a script as a person reads it, fit for a terminal: without anchors and escapes, numeric ranges as
/// "low..high". A true regular expression keeps its escapes and stands after the word "pattern".
std::string readablePattern(StringView pattern);

}  // namespace vrx
