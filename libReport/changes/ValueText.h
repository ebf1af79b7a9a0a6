#pragma once

#include <optional>
#include <string>

#include "libDiagnosis/MachineChanges.h"

/// How reports for people tell a value that changed.
namespace vrx {

/// "name", "OS locator", a key.
std::string valueTitle(const ValueChange& value);

/// The value before or after; "(none)" where there was none.
std::string valueSide(const std::optional<String>& text);

}  // namespace vrx
