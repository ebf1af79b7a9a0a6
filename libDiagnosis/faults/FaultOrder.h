#pragma once

#include <vector>

#include "libDiagnosis/Fault.h"

namespace vrx {

/// First what says that it is another machine, then parts as somebody works through a machine, then what sums up parts,
/// and last what nobody can tell. Faults of one kind of part stay in their order.
void putInOrder(std::vector<Fault>& faults);

}  // namespace vrx
