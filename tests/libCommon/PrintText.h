#pragma once

#include <ostream>

#include "libCommon/text/String.h"

namespace vrx {

/// Lets failing expectations show texts.
inline void PrintTo(const String& text, std::ostream* out) { *out << '"' << text.toUtf8() << '"'; }

}  // namespace vrx
