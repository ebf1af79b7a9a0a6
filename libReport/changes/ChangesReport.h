#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "libCommon/time/DateTime.h"
#include "libDiagnosis/MachineChanges.h"
#include "libDiagnosis/machines/UntoldChanges.h"
#include "libReport/ReportWriter.h"

namespace vrx {

/// What differs between two machines, and how reports call the two. Devices are borrowed.
///
///     const ChangesReport report{"yesterday", "today", machineChanges(yesterday, today, false)};
///     std::cout << changesText(report, TextFormat());
struct ChangesReport {
    std::string before;
    std::string after;
    std::vector<DeviceChange> changes;
    DateTime started{};
    UntoldChanges::Count untold{};  ///< what is not among the changes because only one of the two can tell of it

    /// Other names of the kernel do not make two machines differ.
    bool isEqual() const {
        return std::ranges::all_of(changes, [](const DeviceChange& change) { return change.isOnlyRenamed(); });
    }
};

/// text: whether the two are equal, then missing, added, moved, changed and renamed devices. json: the same for
/// programs; junit and csv: docs/formats.md.
ReportWriters<ChangesReport> changesWriters();

std::string changesText(const ChangesReport& report, const TextFormat& format);
/// As programs read them: "missing", "added", "moved", "renamed" or "changed"; "property", "name", "osLocator" or
/// "capabilities".
std::string_view kindOf(const DeviceChange& change);
std::string_view nameOf(ValueChange::What what) noexcept;

std::string changesJunit(const ChangesReport& report, const TextFormat& format);
std::string changesCsv(const ChangesReport& report, const TextFormat& format);
std::string changesJson(const ChangesReport& report, const TextFormat& format);

}  // namespace vrx
