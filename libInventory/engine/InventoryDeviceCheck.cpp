/// The single-device check: the device's tests are wrapped in a script of one `device` element, and a private engine
/// runs it on a private store that holds a copy of that device. Nothing outlives the call.

#include <memory>

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

bool Inventory::checkDevice(const IDeviceImp& device, const String& content, InventoryTestObserver* observer,
                            bool report) {
    Inventory engine;
    return checkDevice(device, content, observer, report, engine);
}

bool Inventory::canCheckDevice(const IDeviceImp& device) {
    return device.type().toString(0, false).view().find_first_of(u"\"&<>'") == StringView::npos;
}

bool Inventory::checkDevice(const IDeviceImp& device, const String& content, InventoryTestObserver* observer,
                            bool report, Inventory& engine) {
    State& state = *engine.m_state;
    state.m_enableUnsatisfiedDeviceTips = false;
    StateManager store;
    store.addDevice(boost::shared_ptr<IDeviceImp>(device.clone()), nullptr);
    state.m_stateManager = &store;
    state.m_tipMatchedProperties = report;

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
    if (report) {
        TestRunEventImp event(eventSource::NAME, eventSource::TEST_FAILED);
        event.setEventOccurence(eventSource::TEST_ENDED, String::EMPTY, eventSource::SOURCE_FILE, __LINE__);
        event.addTip(std::make_unique<InventoryXmlTip>(state.m_script.toString()).release());
        if (observer != nullptr) {
            observer->handleEvent(event);
        }
    }
    return result;
}

}  // namespace vrx
