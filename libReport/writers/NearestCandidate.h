#pragma once

#include <string>
#include <vector>

#include "libReport/writers/PropertyMismatch.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// The candidate for a `device` element that came nearest to meeting it.
struct NearestCandidate {
    const IDeviceImp* device = nullptr;  ///< null when the messages do not tell which one it is
    std::vector<PropertyMismatch> mismatches;
    std::size_t candidates = 0;  ///< how many failed a property
};

/// The candidate with the fewest failed properties, the first of several in the order of candidates. `type` is what the
/// element asks for. Without `machine` devices are told apart by the texts of the messages alone.
/// Requires: mismatches is not empty.
NearestCandidate nearestOf(const std::vector<PropertyMismatch>& mismatches, const CapabilityImp& type,
                           const StateManager* machine);

}  // namespace vrx
