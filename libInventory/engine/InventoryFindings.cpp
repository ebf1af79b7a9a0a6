/// What the last run found, handed out as data.

#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/assignment/CompetitionSearch.h"
#include "libInventory/engine/findings/DeviceOutcomes.h"
#include "libInventory/engine/findings/KeptLinks.h"
#include "libInventory/engine/findings/RunFindings.h"

namespace vrx {

Array<Finding> Inventory::findings() const { return RunFindings(*m_state).written(); }

Array<Finding> Inventory::notices() const { return RunFindings(*m_state).notices(); }

Array<const XmlElement*> Inventory::missingElements() const { return RunFindings(*m_state).missingElements(); }

namespace {

// The links are sorted by device for the first question after a run; there may be one for every element.
const KeptLinks& keptLinksOf(InventoryState& state) {
    if (!state.m_keptLinks) {
        state.m_keptLinks = std::make_unique<KeptLinks>(state);
    }
    return *state.m_keptLinks;
}

}  // namespace

DeviceOutcome Inventory::outcomeOf(const XmlElement& element) const {
    return DeviceOutcomes(*m_state, element).make(keptLinksOf(*m_state));
}

const IDeviceImp* Inventory::deviceOf(const XmlElement& element) const {
    return keptLinksOf(*m_state).deviceOf(element);
}

const XmlElement* Inventory::holderOf(const IDeviceImp& device) const { return keptLinksOf(*m_state).holderOf(device); }

Competition Inventory::competitionFor(const XmlElement& element) const {
    return findCompetition(*m_state, keptLinksOf(*m_state), element);
}

Array<ChosenAlternative> Inventory::chosenAlternatives() const { return RunFindings(*m_state).chosenAlternatives(); }

Array<ExtraDevice> Inventory::extraDevicesWithRules() const { return RunFindings(*m_state).extraDevices(); }

const RunSummary& Inventory::summary() const { return m_state->m_record.summary; }

}  // namespace vrx
