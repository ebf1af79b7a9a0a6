/// Whether the machine holds what a script describes, asked of a private engine, so that the caller's is never touched.

#include "libInventory/Inventory.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

bool Inventory::matchParts(const String& script, DeviceToPartsTable& deviceToParts, Array<DeviceSpec>* extraDevices,
                           StateManager* state) {
    return matchParts(script, deviceToParts, extraDevices, state, nullptr);
}

// Contract: the answer is that before the extra-device check. A part is present when its devices are, whatever other
// devices the machine has.
bool Inventory::matchParts(const String& script, DeviceToPartsTable& deviceToParts, Array<DeviceSpec>* extraDevices,
                           StateManager* state, MatchCache* matchCache) {
    Inventory engine;
    if (state != nullptr) {
        engine.setStateManager(*state);
    }
    engine.setDeviceToPartsTable(&deviceToParts);
    engine.setMatchCache(matchCache);
    const bool loaded = engine.loadInventoryScript(script);
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchParts() parse: " << loaded << u" state: " << static_cast<const void*>(state) << u" parts:\n"
                                    << script);
    if (!loaded) {
        return false;
    }
    bool resultBeforeExtrasCheck = false;
    const bool result = engine.run(&resultBeforeExtrasCheck);
    if (extraDevices != nullptr) {
        *extraDevices = engine.extraDevices();
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchParts() run: " << result << u" resultBeforeExtrasCheck: " << resultBeforeExtrasCheck);
    return resultBeforeExtrasCheck;
}

}  // namespace vrx
