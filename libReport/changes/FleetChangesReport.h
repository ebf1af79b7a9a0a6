#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "libDiagnosis/machines/FleetChanges.h"
#include "libReport/ReportWriter.h"

namespace vrx {

/// What changed in a fleet, and how reports call the two days.
struct FleetChangesReport {
    std::string before;
    std::string after;
    std::vector<FleetMachine> machines;

    std::size_t count(FleetMachine::Kind kind) const;
    std::size_t count(FleetDeviceChange::Kind kind) const;

    /// Machines of which only one of the two recordings tells something.
    std::size_t untoldCount() const;

    /// Whether every machine is there on both days, and as it was, as far as both recordings tell.
    bool isEqual() const { return count(FleetMachine::Kind::Equal) == machines.size(); }
};

/// text, json, and html: a page that needs nothing from outside.
ReportWriters<FleetChangesReport> fleetChangesWriters();

std::string fleetChangesText(const FleetChangesReport& report, const TextFormat& format);
std::string fleetChangesJson(const FleetChangesReport& report, const TextFormat& format);
std::string fleetChangesHtml(const FleetChangesReport& report, const TextFormat& format);

/// As programs read them: "went", "came", "moved", "replaced", "updated", "changed"; "equal", "unreadable".
std::string_view nameOf(FleetDeviceChange::Kind kind) noexcept;
std::string_view nameOf(FleetMachine::Kind kind) noexcept;

/// "rack1 (Falcon 9, FX-100001)".
std::string machineTitle(const FleetMachine& machine);

/// "MemoryModule "Flint 16" (dimm:A1), from rack2 (dimm:B1)".
std::string changeTitle(const FleetMachine& machine, const FleetDeviceChange& change);

/// "2 replaced, 1 updated"; empty without any.
std::string partCounts(const FleetChangesReport& report);

}  // namespace vrx
