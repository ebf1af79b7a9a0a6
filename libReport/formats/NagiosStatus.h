#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "libReport/CheckReport.h"

namespace vrx {

/// What monitoring systems know: the exit status of a plugin.
enum class NagiosStatus : std::uint8_t { Ok = 0, Warning = 1, Critical = 2, Unknown = 3 };

/// A check that has failed is critical, unless every fault is of a kind that only warns; what nobody can tell is
/// unknown.
NagiosStatus nagiosStatus(const CheckReport& report) noexcept;

/// "INVENTORY UNKNOWN - ...", without the figures that may follow.
std::string nagiosLine(NagiosStatus status, std::string_view text);

}  // namespace vrx
