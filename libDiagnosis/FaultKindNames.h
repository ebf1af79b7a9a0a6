#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "libDiagnosis/Fault.h"

namespace vrx {

std::span<const FaultKind> allFaultKinds() noexcept;

/// The kind that `nameOf` calls so; nothing when there is none.
std::optional<FaultKind> faultKindNamed(std::string_view name) noexcept;

}  // namespace vrx
