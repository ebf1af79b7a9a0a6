#pragma once

#include <string>

#include "libCommon/text/String.h"

namespace vrx::cli {

/// Reads a whole file that the user named, "-" for standard input. On failure `bytes` is empty and `reason` says why.
bool loadInput(const std::string& path, std::string& bytes, String& reason);

}  // namespace vrx::cli
