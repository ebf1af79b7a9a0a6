#include "libInventory/engine/assignment/RunStart.h"

namespace vrx {

RunStart::RunStart(const InventoryState& state) {
    for (const XmlElement* const element : state.m_record.orElements) {
        m_selectedChildren.push_back(InventoryState::existingContext(element)->m_selectedChild);
    }
    if (state.m_deviceToPartsTable != nullptr) {
        m_parts = *state.m_deviceToPartsTable;
    }
}

void RunStart::restore(InventoryState& state) const {
    for (std::size_t i = 0; i < m_selectedChildren.size(); ++i) {
        ElementContext& context = *InventoryState::existingContext(state.m_record.orElements[i]);
        context.m_selectedChild = m_selectedChildren[i];
        context.m_atLastChild = false;
        context.m_visited = false;
    }
    for (const unsigned slot : {slot::BEST, slot::CURRENT}) {
        state.m_tipTables[slot].clear();
        state.m_extraTables[slot].clear();
        state.m_errorElementLists[slot].clear();
    }
    for (auto& entry : state.m_tipTables[slot::SCRIPT]) {
        entry.value.remove(FindingKind::NestedPart);
    }
    if (state.m_deviceToPartsTable != nullptr) {
        *state.m_deviceToPartsTable = m_parts;
    }
    state.m_record.keptLinks.clear();
    state.m_record.areLinksKept = false;
}

}  // namespace vrx
