#pragma once

#include <string>

#include "libReport/check/CheckOutcome.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// A check for people: the verdict, the devices that are missing and those too many, the findings in the order of the
/// script, counts and time. Requires: the script and the machine were loaded.
std::string checkTextReport(const CheckOutcome& outcome, const TextFormat& format);

}  // namespace vrx
