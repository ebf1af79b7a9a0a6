#pragma once

#include <string>
#include <vector>

#include "libDiagnosis/Fault.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

/// An array with an object for each fault; docs/reports.md lists its members. `file` is the script's path.
void writeFaults(JsonWriter& json, const std::vector<Fault>& faults, std::string_view file);

}  // namespace vrx
