#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "libDiagnosis/WantedDevices.h"
#include "libFleet/FleetResult.h"
#include "libFleet/machines/FleetRecording.h"
#include "libReport/CheckRun.h"

namespace vrx {

/// A script that machines are checked against. A run writes what it finds into its script, so each check copies it from
/// the one that was loaded here; that it is a good one is found out once, by whoever makes this.
struct FleetScript {
    std::string path;
    std::shared_ptr<const Inventory> loaded;  ///< holds the script, and never runs it
};
using FleetScripts = std::vector<FleetScript>;

/// What one thread has read off each of the scripts so far.
using FleetWanted = std::vector<WantedDevices>;

/// How a fleet is checked.
struct FleetOptions {
    bool isPlain = false;                          ///< see CheckBasis
    const std::vector<Waiver>* waivers = nullptr;  ///< borrowed; null for none
    DateTime started = DateTime::getCurrentDateTime();

    /// Why a file that begins so is no recording, though it could be read as one; empty when it is one.
    std::string (*refuse)(std::string_view start) = nullptr;

    unsigned threads = 1;
    const std::atomic<bool>* isStopped = nullptr;  ///< ends the run soon after it becomes true; null for never
    Inventory::Assignment assignment = Inventory::Assignment::Auto;
    SearchLimits limits;  ///< for each machine
};

/// Checks one recording against the script, or against each of several until one is met: with its import the whole of
/// what `check` does. Any number of threads may do so with the same scripts, each with an `asked` of its own, which is
/// empty at first and always of the same scripts. Whatever is wrong with the recording is a
/// result, and so is a failure of the check itself.
///
/// Requires: there are scripts; the recording is not known.
FleetResult checkRecording(const FleetRecording& recording, const FleetScripts& scripts, const FleetOptions& options,
                           FleetWanted& asked);

}  // namespace vrx
