/// The single-device check: the device's tests are wrapped in a script of one `device` element, and an engine of its
/// own runs it on a store that holds a copy of that device. The store and the observer do not outlive the call.
///
/// Contract: the type's text is put into the script as it is.

#include <memory>

#include "libCommon/text/UuCode.h"

#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/support/EventSource.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/results/InventoryXmlTip.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

namespace {

/// Lends an engine a store with one device, and an observer, for as long as it lives.
class Loan {
public:
    Loan(InventoryState& state, const IDeviceImp& device) : m_state(state), m_lender(state.m_stateManager) {
        m_store.addDevice(boost::shared_ptr<IDeviceImp>(device.clone()), nullptr);
        state.m_stateManager = &m_store;
    }
    ~Loan() {
        m_state.m_stateManager = m_lender;
        m_state.m_observers.clear();
    }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

private:
    InventoryState& m_state;
    StateManager* m_lender;
    StateManager m_store;
};

void tellReport(const XmlDocument& script, InventoryTestObserver& observer) {
    TestRunEventImp event(eventSource::NAME, eventSource::TEST_FAILED);
    event.setEventOccurence(eventSource::TEST_ENDED, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
    event.addTip(std::make_unique<InventoryXmlTip>(script.toString()).release());
    observer.handleEvent(event);
}

}  // namespace

bool Inventory::checkDevice(const IDeviceImp& device, const String& content, InventoryTestObserver* observer,
                            bool report) {
    Inventory engine;
    return checkDevice(device, content, observer, report, engine);
}

bool Inventory::checkDevice(const IDeviceImp& device, const String& content, InventoryTestObserver* observer,
                            bool report, Inventory& engine) {
    InventoryState& state = *engine.m_state;
    state.m_enableUnsatisfiedDeviceTips = false;
    state.m_tipMatchedProperties = report;
    const Loan loan(state, device);
    const String script = concat(u"<inventory-check><device type=\"", device.type().toString(0, false), u"\">", content,
                                 u"</device></inventory-check>");
    if (!engine.loadInventoryScript(script)) {
        VRX_LOG(inventoryLog(), LogPriority::Warning, u"checkDevice() failed to parse script: " << script);
        return false;
    }
    if (observer != nullptr) {
        state.m_observers.append(observer);
    }
    const bool result = engine.run(nullptr);
    if (report && observer != nullptr) {
        tellReport(state.m_script, *observer);
    }
    return result;
}

bool Inventory::canCheckDevice(const IDeviceImp& device) {
    const String type = device.type().toString(0, false);
    return type.view().find_first_of(u"\"&<\t\r\n") == StringView::npos && !needsUuEncode(type);
}

}  // namespace vrx
