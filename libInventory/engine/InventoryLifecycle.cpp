/// Making, setting up and resetting an Inventory, and the contexts of script elements.

#include <algorithm>

#include "libCommon/Assertion.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/RunDriver.h"
#include "libInventory/engine/findings/KeptLinks.h"

namespace vrx {

InventoryState::InventoryState() : m_stateManager(&StateManager::instance()) {
    m_associationSets.emplace();
    for (unsigned i = 0; i < slot::COUNT; ++i) {
        m_tipTables.emplace();
        m_extraTables.emplace();
        m_errorElementLists.emplace();
    }
}

InventoryState::~InventoryState() = default;

ElementContext& InventoryState::makeContext(XmlElement* element) {
    ElementContext& context = m_contexts.emplace_back();
    element->SetUserData(&context);
    return context;
}

ElementContext& InventoryState::contextOf(XmlElement* element) {
    if (element->GetUserData() == nullptr) {
        ElementContext* const data = &makeContext(element);
        VRX_ASSERT(element->GetUserData());
        VRX_ASSERT(element->GetUserData() == data);
    }
    return *existingContext(element);
}

Inventory::Inventory() : m_state(std::make_unique<InventoryState>()) {}

Inventory::~Inventory() = default;

void Inventory::setStateManager(StateManager& manager) { m_state->m_stateManager = &manager; }

StateManager& Inventory::stateManager() const { return *m_state->m_stateManager; }

void Inventory::setEnableUnsatisfiedDeviceTips(bool enable) { m_state->m_enableUnsatisfiedDeviceTips = enable; }

void Inventory::registerInventoryObserver(InventoryTestObserver& observer) { m_state->m_observers.append(&observer); }

void Inventory::setProgress(std::function<bool(const RunProgress&)> progress) {
    m_state->m_progress = std::move(progress);
}

void Inventory::setAssignment(Assignment assignment) { m_state->m_assignment = assignment; }
void Inventory::setSearch(Search search) { m_state->m_search = search; }

void Inventory::setThreads(unsigned threads) { m_state->m_threads = std::max(1U, threads); }

void Inventory::setDeviceToPartsTable(DeviceToPartsTable* table) { m_state->m_deviceToPartsTable = table; }

void Inventory::setMatchCache(MatchCache* cache) { m_state->m_matchCache = cache; }

const Array<Inventory::DeviceSpec>& Inventory::unsatisfiedDevices() const { return m_state->m_unsatisfiedDevices; }

const Array<Inventory::DeviceSpec>& Inventory::extraDevices() const { return m_state->m_extraDevices; }

const XmlDocument& Inventory::script() const { return m_state->m_script; }

bool Inventory::run(bool* inventorySatisfied) { return RunDriver(*m_state).run(inventorySatisfied); }

void InventoryState::returnBaseSet() {
    if (m_hasBaseSetInUse) {
        m_associations.rewind();
        m_associations.swap(m_associationSets[0]);
        m_associations.clear();
        m_hasBaseSetInUse = false;
    }
}

const Inventory::InventoryDeviceAssociations& InventoryState::setOf(const XmlElement& element) const {
    for (const XmlContainer* at = &element; at != nullptr; at = at->Parent()) {
        const auto alternative = m_record.alternatives.find(at->ToElement());
        if (alternative != m_record.alternatives.end()) {
            return m_associationSets[alternative->second];
        }
    }
    return m_hasBaseSetInUse ? m_associations : m_associationSets[0];
}

// The error slots are keyed by elements of the script that goes away, which nobody can ask for again; they are emptied
// so that an element of the next script at the same address does not inherit findings.
void InventoryState::reset() {
    m_script.Clear();
    m_contexts.clear();
    for (unsigned i = 0; i < slot::COUNT; ++i) {
        m_tipTables[i].clear();
        m_extraTables[i].clear();
        m_errorElementLists[i].clear();
    }
    m_associationSets.clear();
    m_associationSets.emplace();
    m_associations.clear();
    m_hasBaseSetInUse = false;
    m_failOnExtraElements.clear();
    m_extraDeviceRules.reset();
    m_unsatisfiedDevices.clear();
    m_extraDevices.clear();
    m_checkNames = true;
    m_checkHwLocators = true;
    m_checkOsLocators = true;
    m_totalCombinations = 1;
    m_record = RunRecord();
    m_keptLinks.reset();
    m_valuesOfRun.reset();
}

}  // namespace vrx
