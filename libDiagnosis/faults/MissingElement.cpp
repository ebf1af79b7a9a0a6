#include "libDiagnosis/faults/MissingElement.h"

namespace vrx {

const DeviceOutcome& Outcomes::of(const MissingElement& missing) {
    if (missing.namesPlace()) {
        if (m_last.element != missing.element) {
            m_last = m_inventory.outcomeOf(*missing.element);
        }
        return m_last;
    }
    const auto [at, isNew] = m_shared.try_emplace(missing.asks->sort);
    if (isNew) {
        at->second = m_inventory.outcomeOf(*missing.element);
    }
    return at->second;
}

}  // namespace vrx
