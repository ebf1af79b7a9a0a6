#pragma once

#include <string>

#include "host/report/CheckOutcome.h"

namespace vrx::host {

/// A check for programs: one object (docs/ has its form).
std::string checkJsonReport(const CheckOutcome& outcome);

}  // namespace vrx::host
