#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "libCommon/text/String.h"

namespace vrx {

/// "1 device", "2 devices".
std::string counted(std::size_t count, const std::string& noun);

/// How messages name a file that was given as that path: "-" is standard input.
std::string inputName(const std::string& path);

/// A text as a cell of a table: printable, "-" when there is none.
std::string orDash(const String& text);

/// "0.8 ms", "12 ms", "3.1 s".
std::string durationText(std::chrono::steady_clock::duration duration);

}  // namespace vrx
