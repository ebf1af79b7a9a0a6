/// Events that a run raises to its observers: notices about the script (type 2) and the failed test (type 1).
///
/// An observer may do what it likes while it is told, also register another observer (which hears of the next event) or
/// add devices to the store. Neither list is therefore walked by iterators.

#include "libInventory/engine/ScriptNotices.h"

#include <algorithm>
#include <memory>

#include "libInventory/InventoryTestObserver.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/CandidateList.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/support/EventSource.h"
#include "libSystemState/results/InventoryXmlTip.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

template <typename Tell>
void ScriptNotices::tellAll(const Tell& tell) {
    if (m_state.m_candidates != nullptr) {
        m_state.m_candidates->makeOwn();
    }
    const std::size_t count = m_state.m_observers.size();
    m_state.m_tellings += count;
    for (std::size_t i = 0; i < count; ++i) {
        tell(*m_state.m_observers[i]);
    }
}

void ScriptNotices::fileError(const String& message) {
    tellAll([&message](InventoryTestObserver& observer) { observer.handleFileError(message); });
}

void ScriptNotices::notify(const TestRunEventImp& event) {
    tellAll([&event](InventoryTestObserver& observer) { observer.handleEvent(event); });
}

void ScriptNotices::unknownElement(const XmlElement& element) {
    m_state.m_record.notices.push_back({FindingKind::UnknownElement, &element});
    TestRunEventImp event(eventSource::NAME, u"EncounteredUnknownElement");
    event.setEventOccurence(eventSource::SCRIPT_NOTICE, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    event.setVariable(u"location", VRXValue(placeOf(&element))).setVariable(u"element", VRXValue(element.toString()));
    notify(event);
}

void ScriptNotices::notUnderNot(const XmlElement& element) {
    m_state.m_record.notices.push_back({FindingKind::NotUnderNot, &element});
    TestRunEventImp event(eventSource::NAME, u"FoundNotUnderNot");
    event.setEventOccurence(eventSource::SCRIPT_NOTICE, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    event.setVariable(u"location", VRXValue(placeOf(&element)));
    notify(event);
}

void ScriptNotices::testFailed() {
    if (m_state.m_observers.isEmpty()) {
        return;
    }
    TestRunEventImp event(eventSource::NAME, eventSource::TEST_FAILED);
    event.setEventOccurence(eventSource::TEST_ENDED, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    const auto& observers = m_state.m_observers;
    if (std::any_of(observers.begin(), observers.end(),
                    [](const InventoryTestObserver* observer) { return observer->readsAnnotatedScript(); })) {
        event.addTip(std::make_unique<InventoryXmlTip>(m_state.m_script.toString()).release());
    }
    notify(event);
}

}  // namespace vrx
