#pragma once

#include <string_view>

namespace vrx {

/// What reports name as the program that made them.
inline constexpr std::string_view PROGRAM_NAME = "vrx-inventory";

/// The version of the program and its libraries: "0.1.0".
std::string_view programVersion() noexcept;

}  // namespace vrx
