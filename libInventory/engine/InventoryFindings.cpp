/// What the last run found, handed out as data.

#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/DeviceOutcomes.h"
#include "libInventory/engine/findings/KeptLinks.h"
#include "libInventory/engine/findings/RunFindings.h"

namespace vrx {

Array<Finding> Inventory::findings() const { return RunFindings(*m_state).written(); }

Array<Finding> Inventory::notices() const { return RunFindings(*m_state).notices(); }

Array<const XmlElement*> Inventory::missingElements() const { return RunFindings(*m_state).missingElements(); }

// The links are sorted by device for the first question after a run; there may be one for every element.
DeviceOutcome Inventory::outcomeOf(const XmlElement& element) const {
    if (!m_state->m_keptLinks) {
        m_state->m_keptLinks = std::make_unique<KeptLinks>(*m_state);
    }
    return DeviceOutcomes(*m_state, element).make(*m_state->m_keptLinks);
}

Array<ChosenAlternative> Inventory::chosenAlternatives() const { return RunFindings(*m_state).chosenAlternatives(); }

Array<ExtraDevice> Inventory::extraDevicesWithRules() const { return RunFindings(*m_state).extraDevices(); }

const RunSummary& Inventory::summary() const { return m_state->m_record.summary; }

}  // namespace vrx
