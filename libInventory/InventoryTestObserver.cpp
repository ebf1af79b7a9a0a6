#include "libInventory/InventoryTestObserver.h"

#include "libCommon/logging/Logger.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

namespace {

Logger& observerLog() {
    static Logger& logger = Logger::get("InventoryTestObserver");
    return logger;
}

}  // namespace

void InventoryTestObserver::handleProgress(const String& msg) {
    VRX_LOG(observerLog(), LogPriority::Debug, u"handleProgress: msg: " << msg);
}

void InventoryTestObserver::handleEvent(const TestRunEventImp& event) {
    // Contract: the line says "handleError" although the operation is handleEvent.
    VRX_LOG(observerLog(), LogPriority::Debug, u"handleError: msg: " << event.toString());
}

void InventoryTestObserver::handleFileError(const String& msg) {
    VRX_LOG(observerLog(), LogPriority::Debug, u"handleFileError: msg: " << msg);
}

void InventoryTestObserver::handlePercentDone(int iPercent) {
    VRX_LOG(observerLog(), LogPriority::Debug, u"handlePercentDone: iPercent: " << iPercent);
}

}  // namespace vrx
