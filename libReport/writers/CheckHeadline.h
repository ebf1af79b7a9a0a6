#pragma once

#include <string>

#include "libReport/CheckReport.h"
#include "libReport/DeviceCheckReport.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// What is to be said first, in one line that with the verdict in front takes no more than 100 columns. Of a check that
/// failed: the first fault, then how many more there are. Requires: the check ran.
std::string headlineOf(const CheckReport& report);

/// The same of the check of one device, as long as it may be.
std::string headlineOf(const DeviceCheckReport& report);

/// The verdict and what is to be said first; on a terminal as many lines as that takes.
std::string verdictLine(Verdict verdict, const std::string& headline, const TextFormat& format);

}  // namespace vrx
