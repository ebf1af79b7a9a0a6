#pragma once

#include <string>
#include <vector>

#include "libInventory/ImportReport.h"

namespace vrx {

/// What an import passed over, or took for something else, and people should hear of: a line for each sort, with how
/// many there are and the first few of them with their places. Printable.
std::vector<std::string> importNotices(const ImportReport& report);

}  // namespace vrx
