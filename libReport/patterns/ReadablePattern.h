#pragma once

#include <string>

#include "libCommon/text/String.h"

namespace vrx {

/// A pattern of a script as a person reads it, fit for a terminal: without anchors and escapes, numeric ranges as
/// "low..high", bounds of versions as "at least 2.14", alternatives of texts as "A or B". A true regular expression
/// keeps its escapes and stands after the word "pattern".
std::string readablePattern(StringView pattern);

/// Whether the pattern stands for one text, escapes aside.
bool isReadAsText(StringView pattern);

}  // namespace vrx
