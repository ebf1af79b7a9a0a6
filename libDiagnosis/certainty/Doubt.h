#pragma once

#include <cstdint>
#include <vector>

#include "libDiagnosis/Difference.h"
#include "libInventory/ImportReport.h"
#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"

namespace vrx {

class WantedDevices;

/// Something that a script asks for and that nobody can tell of the machine.
struct Doubt {
    enum class Asked : std::uint8_t {
        Device,     ///< a device that was not found; it may be there
        Forbidden,  ///< a device that must not be there; it may be there
        Extra,      ///< devices too many, which a `fail-on-extra` element looks for; there may be some
        Property    ///< a property whose true value is not known
    };
    enum class Cause : std::uint8_t {
        Unread,       ///< `text` could not be read, for `reason`
        PassedOver,   ///< `text` in the recording is no device that rules can see; it may be what was asked for
        UnknownType,  ///< a device has the type `text`, which is none
        NoNumber      ///< the recording has `text` in place of a number, or in place of its units
    };

    Asked asked = Asked::Device;
    Cause cause = Cause::Unread;
    ElementPlace place;          ///< of the script's element
    ElementPlace device;         ///< of the `device` element that it is or lies in, if it does
    Inventory::DeviceSpec spec;  ///< what it asks for; of a rule for extra devices its type, or else its capability
    String key;                  ///< of the property
    String text;
    String reason;
};

/// Whether the answer of a run is certain, seen what is not known of the machine.
struct Certainty {
    bool couldHavePassed = false;  ///< of a run that failed: not known to be failed for sure
    bool couldHaveFailed = false;  ///< of a run that passed: not known to have passed for sure
    std::vector<Doubt> doubts;     ///< in document order, rules for extra devices last
};

/// Looks at what the store says of unread sources, and at what the import passed over, if it was one. Costs nothing to
/// speak of where all was read.
///
/// Requires: the inventory has run on that machine, `passed` is its answer, and the import, if any, filled that store.
Certainty certaintyOf(const Inventory& inventory, const StateManager& machine, const ImportReport* import, bool passed);

/// The same, for one of many machines that are checked against copies of one script.
Certainty certaintyOf(const Inventory& inventory, const StateManager& machine, const ImportReport* import, bool passed,
                      WantedDevices& asked);

/// The same of a check of one device of the machine, which `engine` has made.
Certainty certaintyOfDevice(const Inventory& engine, const IDeviceImp& device, const StateManager& machine,
                            const ImportReport* import, bool passed);

}  // namespace vrx
