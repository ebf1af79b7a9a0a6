#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace vrx::host {

/// "1 device", "2 devices".
std::string counted(std::size_t count, const std::string& noun);

/// "0.8 ms", "12 ms", "3.1 s".
std::string durationText(std::chrono::steady_clock::duration duration);

}  // namespace vrx::host
