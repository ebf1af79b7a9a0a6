#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "libDiagnosis/Fault.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

/// The members of the object that a fault is, for who adds some; docs/reports.md lists them. `file` is the script's
/// path.
void writeFaultFields(JsonWriter& json, const Fault& fault, std::string_view file);

/// The same, for who has the fault's text already (FaultText.h).
void writeFaultFields(JsonWriter& json, const Fault& fault, std::string_view file, std::string_view text);

/// An array with an object for each fault.
void writeFaults(JsonWriter& json, const std::vector<Fault>& faults, std::string_view file);

/// What differs, as JSON names it: "property", "name", "osLocator", "type".
std::string_view nameOfWhat(const Difference& difference) noexcept;

}  // namespace vrx
