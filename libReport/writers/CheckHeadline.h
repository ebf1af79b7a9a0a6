#pragma once

#include <string>

#include "libReport/CheckReport.h"

namespace vrx {

/// What is to be said first, in one line. Of a check that failed: the first problem with its device by type, name and
/// locator, then how many more there are. Problems are, in this order: parts that are missing or differ (in the order
/// of the script), devices that are extra, devices that must not be there, then what sums up parts (memory, board,
/// system) and is missing or differs. A missing device and an extra one that are the two sides of one changed device
/// are one problem. Requires: the check ran.
std::string headlineOf(const CheckReport& report);

}  // namespace vrx
