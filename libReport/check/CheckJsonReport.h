#pragma once

#include <string>

#include "libReport/check/CheckOutcome.h"

namespace vrx {

/// A check for programs: one object (docs/ has its form).
std::string checkJsonReport(const CheckOutcome& outcome);

}  // namespace vrx
