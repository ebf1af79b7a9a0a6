#pragma once

#include <string_view>

#include "libDiagnosis/certainty/Doubt.h"
#include "libInventory/Inventory.h"

namespace vrx {

/// What a check says about a machine.
///
///     const bool passed = inventory.run();
///     if (verdictOf(inventory, passed) == Verdict::Undecided) {
///         askSomebody();
///     }
enum class Verdict {
    NotRun,   ///< the script or the machine could not be loaded
    Refused,  ///< the script has mistakes
    Passed,
    Failed,
    NothingToCheck,  ///< the script asks for nothing
    Undecided,  ///< patterns were given up, or something is not known of the machine, and that could change the result
};

/// As programs read it: "passed", "failed", "undetermined" or "refused".
std::string_view nameOf(Verdict verdict) noexcept;

/// Of a run that has ended with that answer.
Verdict verdictOf(const Inventory& inventory, bool passed, const Certainty& certainty);

}  // namespace vrx
