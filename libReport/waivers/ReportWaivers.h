#pragma once

#include <string>
#include <vector>

#include "libReport/CheckReport.h"

namespace vrx {

/// Sets aside the faults of a report that waivers cover. When nothing else kept the machine from passing, it passes.
/// Requires: the report has its verdict, findings, doubts and faults, and is of a run of that inventory.
void waiveFaults(CheckReport& report, const Inventory& inventory, const std::vector<Waiver>& waivers);

/// "ID: REASON (NAME, until DAY)", printable.
std::string waiverText(const Waiver& waiver);

}  // namespace vrx
