#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "libFleet/results/FleetFault.h"
#include "libReport/CheckReport.h"

namespace vrx {

/// What became of one recording of a fleet.
enum class FleetVerdict : std::uint8_t {
    Passed,
    Failed,
    Undetermined,
    Unreadable  ///< there is no machine in it
};

/// As programs read it: "passed", "failed", "undetermined" or "unreadable".
std::string_view nameOf(FleetVerdict verdict) noexcept;

/// One recording and what its check said. Texts are UTF-8, as programs read them: nothing is escaped.
struct FleetResult {
    std::string file;    ///< the recording's path; of one in an archive `archive.tar.gz:path`
    std::string script;  ///< the script's path; of several the one that is met or, when none is, comes nearest
    std::string time;    ///< when the check began, ISO 8601
    std::string manufacturer;
    std::string model;
    std::string serialNumber;
    std::string hostName;
    FleetVerdict verdict = FleetVerdict::Unreadable;
    std::string headline;  ///< the check's, or why there is no machine
    std::vector<FleetFault> faults;
    std::string line;              ///< all of it as JSON on one line, with a line end
    bool isInternalError = false;  ///< the check itself has failed
    bool isCutShort = false;       ///< the run was stopped amid the check, which says nothing then
    bool isKnown = false;          ///< there is a result of an earlier run: nothing was done but `file`
};

/// The result for a report, but for its line.
FleetResult fleetResult(const std::string& file, const CheckReport& report);

/// The same for a recording without a machine.
FleetResult unreadableResult(const std::string& file, const std::string& reason);

}  // namespace vrx
