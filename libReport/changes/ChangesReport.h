#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "libDiagnosis/MachineChanges.h"
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

    /// Other names of the kernel do not make two machines differ.
    bool isEqual() const {
        return std::ranges::all_of(changes, [](const DeviceChange& change) { return change.isOnlyRenamed(); });
    }
};

/// text: whether the two are equal, then missing, added, moved, changed and renamed devices. json: the same for
/// programs.
ReportWriters<ChangesReport> changesWriters();

std::string changesText(const ChangesReport& report, const TextFormat& format);
std::string changesJson(const ChangesReport& report, const TextFormat& format);

}  // namespace vrx
