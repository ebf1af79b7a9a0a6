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

inline constexpr std::size_t FEWEST_FOR_OUTLIERS = 3;

/// Machines with more than twice as many deviating devices as the one in the middle. Fewer than FEWEST_FOR_OUTLIERS
/// machines have no rest that one of them could differ from.
std::vector<Outlier> outliersOf(const GoldenDraft& draft);

/// A line for each device of the outlier that deviates: what it has, and what most have.
std::vector<std::string> deviationTexts(const GoldenDraft& draft, const Outlier& outlier);

}  // namespace vrx
