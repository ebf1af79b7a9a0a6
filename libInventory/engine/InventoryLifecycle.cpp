/// Making, setting up and resetting an Inventory, and the contexts of script elements.

#include "libCommon/Assertion.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/ExtraDeviceRules.h"
#include "libInventory/engine/InventoryState.h"

namespace vrx {

Inventory::State::State() : m_stateManager(&StateManager::instance()) {
    m_associationSets.emplace();
    for (unsigned i = 0; i < slot::COUNT; ++i) {
        m_tipTables.emplace();
        m_extraTables.emplace();
        m_errorElementLists.emplace();
    }
}

Inventory::State::~State() = default;

ElementContext& Inventory::State::makeContext(XmlElement* element) {
    ElementContext& context = m_contexts.emplace_back();
    element->SetUserData(&context);
    return context;
}

ElementContext& Inventory::State::contextOf(XmlElement* element) {
    if (element->GetUserData() == nullptr) {
        ElementContext* const data = &makeContext(element);
        VRX_ASSERT(element->GetUserData());
        VRX_ASSERT(element->GetUserData() == data);
    }
    return *existingContext(element);
}

Inventory::Inventory() : m_state(std::make_unique<State>()) {}

Inventory::~Inventory() = default;

void Inventory::setStateManager(StateManager& manager) { m_state->m_stateManager = &manager; }

StateManager& Inventory::stateManager() const { return *m_state->m_stateManager; }

void Inventory::setEnableUnsatisfiedDeviceTips(bool enable) { m_state->m_enableUnsatisfiedDeviceTips = enable; }

void Inventory::registerInventoryObserver(InventoryTestObserver& observer) { m_state->m_observers.append(&observer); }

void Inventory::setDeviceToPartsTable(DeviceToPartsTable* table) { m_state->m_deviceToPartsTable = table; }

void Inventory::setMatchCache(MatchCache* cache) { m_state->m_matchCache = cache; }

const Array<Inventory::DeviceSpec>& Inventory::unsatisfiedDevices() const { return m_state->m_unsatisfiedDevices; }

const Array<Inventory::DeviceSpec>& Inventory::extraDevices() const { return m_state->m_extraDevices; }

const XmlDocument& Inventory::script() const { return m_state->m_script; }

// The error slots are keyed by elements of the script that goes away, which nobody can ask for again; they are emptied
// so that an element of the next script at the same address does not inherit findings.
void Inventory::resetState() {
    State& state = *m_state;
    state.m_script.Clear();
    state.m_contexts.clear();
    for (unsigned i = 0; i < slot::COUNT; ++i) {
        state.m_tipTables[i].clear();
        state.m_extraTables[i].clear();
        state.m_errorElementLists[i].clear();
    }
    state.m_associationSets.clear();
    state.m_associationSets.emplace();
    state.m_failOnExtraElements.clear();
    state.m_extraDeviceRules.reset();
    state.m_unsatisfiedDevices.clear();
    state.m_extraDevices.clear();
    state.m_checkNames = true;
    state.m_checkHwLocators = true;
    state.m_checkOsLocators = true;
    state.m_totalCombinations = 1;
}

}  // namespace vrx
