#pragma once

#include <string>
#include <vector>

#include "libDiagnosis/MachineChanges.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// What differs between two machines, and how reports call the two. Devices are borrowed.
struct ChangesOutcome {
    std::string before;
    std::string after;
    std::vector<DeviceChange> changes;
};

/// For people: whether the two are equal, then missing, added, moved and changed devices.
std::string changesText(const ChangesOutcome& outcome, const TextFormat& format);

/// The same for programs.
std::string changesJson(const ChangesOutcome& outcome);

}  // namespace vrx
