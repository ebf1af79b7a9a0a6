/// Events that a run raises to its observers: notices about the script (type 2) and the failed test (type 1).

#include <memory>

#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/EventSource.h"
#include "libSystemState/results/InventoryXmlTip.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

void Inventory::notifyObservers(const TestRunEventImp& event) {
    for (InventoryTestObserver* const observer : m_state->m_observers) {
        observer->handleEvent(event);
    }
}

void Inventory::reportUnknownElement(const XmlElement& element) {
    TestRunEventImp event(eventSource::NAME, u"EncounteredUnknownElement");
    event.setEventOccurence(eventSource::SCRIPT_NOTICE, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    event.setVariable(u"location", VRXValue(locationOf(&element)))
        .setVariable(u"element", VRXValue(element.toString()));
    notifyObservers(event);
}

void Inventory::reportNotUnderNot(const XmlElement& element) {
    TestRunEventImp event(eventSource::NAME, u"FoundNotUnderNot");
    event.setEventOccurence(eventSource::SCRIPT_NOTICE, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    event.setVariable(u"location", VRXValue(locationOf(&element)));
    notifyObservers(event);
}

void Inventory::raiseTestFailed() {
    if (m_state->m_observers.isEmpty()) {
        return;
    }
    TestRunEventImp event(eventSource::NAME, eventSource::TEST_FAILED);
    event.setEventOccurence(eventSource::TEST_ENDED, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    event.addTip(std::make_unique<InventoryXmlTip>(m_state->m_script.toString()).release());
    notifyObservers(event);
}

}  // namespace vrx
