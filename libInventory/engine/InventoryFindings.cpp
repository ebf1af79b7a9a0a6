/// What the last run found, handed out as data.

#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"

namespace vrx {

Array<Finding> Inventory::findings() const { return {}; }

Array<Finding> Inventory::notices() const { return {}; }

Array<const XmlElement*> Inventory::missingElements() const { return {}; }

DeviceOutcome Inventory::outcomeOf(const XmlElement& element) const {
    DeviceOutcome outcome;
    outcome.element = &element;
    return outcome;
}

Array<ChosenAlternative> Inventory::chosenAlternatives() const { return {}; }

Array<ExtraDevice> Inventory::extraDevicesWithRules() const { return {}; }

const RunSummary& Inventory::summary() const { return m_state->m_summary; }

void Inventory::setProgress(std::function<bool(const RunProgress&)> progress) {
    m_state->m_progress = std::move(progress);
}

}  // namespace vrx
