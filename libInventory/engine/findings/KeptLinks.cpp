#include "libInventory/engine/findings/KeptLinks.h"

namespace vrx {

KeptLinks::KeptLinks(const InventoryState& state) {
    const RunRecord& record = state.m_record;
    if (!record.hasKeptCombination) {
        return;
    }
    RunRecord::Links present;
    if (!record.areLinksKept) {
        state.m_associations.getLinks(present);
    }
    for (const auto& [element, device] : record.areLinksKept ? record.keptLinks : present) {
        m_devices.try_emplace(element, device);
        m_holders.try_emplace(device, element);
    }
}

}  // namespace vrx
