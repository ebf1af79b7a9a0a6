#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "libReport/CheckReport.h"

namespace vrx {

/// The findings of a check for people: each with its place, what was expected and what was found. All that is found in
/// one device stands under the device.
struct FindingLines {
    std::string text;
    std::size_t count = 0;
};

/// `file` is the script's path, for the places; empty in a check of one device, which has no script and no other
/// candidates. Extra devices are left out: reports list them by themselves.
FindingLines findingLines(const std::vector<ReportFinding>& findings, const std::vector<DeviceProblem>& devices,
                          const std::string& file, const TextFormat& format);

}  // namespace vrx
