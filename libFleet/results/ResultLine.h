#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "libFleet/FleetResult.h"

namespace vrx {

/// What goes into a line beside the result.
struct LineBasis {
    const CheckReport* report = nullptr;    ///< that the result was made of; null where there is no machine
    const std::vector<std::string>& notes;  ///< what was damaged in the recording and could be helped
};

/// The result as a line of a file of results: one JSON object of `vrx-inventory.fleet/1`.
std::string resultLine(const FleetResult& result, const LineBasis& basis);

/// Reads such a line. False when it is none; `reason` says why.
bool readResultLine(std::string_view line, FleetResult& result, std::string& reason);
}  // namespace vrx
