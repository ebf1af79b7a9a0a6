#include "libReport/formats/FaultCounts.h"

namespace vrx {

std::vector<std::size_t> faultCounts(const std::vector<Fault>& faults) {
    std::vector<std::size_t> counts(allFaultKinds().size());
    for (const Fault& fault : faults) {
        ++counts[static_cast<std::size_t>(fault.kind)];
    }
    return counts;
}

}  // namespace vrx
