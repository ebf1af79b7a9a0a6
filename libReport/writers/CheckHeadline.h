#pragma once

#include <string>

#include "libReport/CheckReport.h"

namespace vrx {

/// What is to be said first, in one line that with the verdict in front takes no more than 100 columns. Of a check that
/// failed: the first fault, then how many more there are. Requires: the check ran.
std::string headlineOf(const CheckReport& report);

}  // namespace vrx
