#pragma once

#include <cstddef>
#include <optional>

#include "libGolden/GoldenDecision.h"
#include "libSystemState/properties/PropertyKinds.h"

namespace vrx {

/// How far values may differ and still be asked for.
struct ValueLimits {
    double mostSpread = 5;             ///< percent of the largest number
    std::size_t mostAlternatives = 4;  ///< texts
    std::size_t machines = 1;
    std::optional<double> tolerance{};  ///< percent; that of a filter makes a range of every number
};

/// Decides what is asked for, from the variants that the decision holds. Requires: all machines have one of them.
void chooseValue(GoldenDecision& decision, PropertyKind kind, const ValueLimits& limits);

}  // namespace vrx
