#pragma once

#include <string>

#include "libReport/CheckReport.h"
#include "libReport/DeviceCheckReport.h"

namespace vrx {

/// What is to be said first, in one line that with the verdict in front takes no more than 100 columns. Of a check that
/// failed: the first fault, then how many more there are. Requires: the check ran.
std::string headlineOf(const CheckReport& report);

/// The same of the check of one device, as long as it may be.
std::string headlineOf(const DeviceCheckReport& report);

}  // namespace vrx
