#pragma once

#include <vector>

#include "libReport/CheckReport.h"

namespace vrx {

/// Adds what a run found to a report: every finding in document order, and for all that is found in one `device`
/// element the problem of that device, those of parts before those of what sums them up. A missing device that nobody
/// says a word about, because its tip is switched off, has a problem all the same. `machine` may be null, when what it
/// holds besides does not matter.
void addFindings(const Array<Finding>& found, const Inventory& inventory, const StateManager* machine,
                 std::vector<ReportFinding>& findings, std::vector<DeviceProblem>& devices);

}  // namespace vrx
