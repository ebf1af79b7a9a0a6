#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "libGolden/GoldenDraft.h"

namespace vrx {

/// Where a machine is not like most others: a device that they have and it lacks, or the other way round, or a value.
struct Deviation {
    std::size_t device = 0;                    ///< of the draft
    const GoldenDecision* decision = nullptr;  ///< null where it is about the device itself. Borrowed
};

/// A machine that differs from the rest.
struct Outlier {
    std::size_t machine = 0;  ///< of the draft
    std::vector<Deviation> deviations;
};

/// Machines with more than twice as many deviating devices as the one in the middle. Fewer than three machines have no
/// rest that one of them could differ from.
std::vector<Outlier> outliersOf(const GoldenDraft& draft);

/// Of a deviation: what most have, and what this machine has.
std::string deviationText(const GoldenDraft& draft, std::size_t machine, const Deviation& deviation);

}  // namespace vrx
