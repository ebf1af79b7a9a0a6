#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "libDiagnosis/MachineChanges.h"
#include "libDiagnosis/machines/UntoldChanges.h"
#include "libInventory/Inventory.h"

/// What changed in a fleet between two days, as data that borrows nothing.
namespace vrx {

/// What tells a machine from others. Texts are empty where nothing says them.
struct MachineKey {
    String model;
    String serialNumber;
    String uuid;
};

/// Of the system that the machine holds, else of its main board.
MachineKey machineKey(const StateManager& machine);

struct FleetDeviceChange {
    enum class Kind : std::uint8_t {
        Went,  ///< maybe to another machine
        Came,
        Moved,     ///< the same piece at another place than before, maybe from another machine
        Replaced,  ///< another piece at the same place
        Updated,   ///< other versions of firmware, and nothing else
        Changed,
    };

    Kind kind = Kind::Changed;
    Inventory::DeviceSpec device;  ///< as it is now; of one that went as it was
    String placeBefore;            ///< hardware locators; empty where it was not, or is not
    String placeAfter;
    std::vector<ValueChange> values;

    /// Where the piece was before, or went to, when that is known and is no place of this change.
    std::string otherMachine{};
    String otherPlace{};
};

struct FleetMachine {
    enum class Kind : std::uint8_t { Equal, Changed, Came, Went, Unreadable };

    Kind kind = Kind::Equal;
    MachineKey key{};
    std::string before{};  ///< name of the recording; empty where there is none
    std::string after{};
    std::vector<FleetDeviceChange> changes{};
    UntoldChanges::Count untold{};
    std::string problem{};  ///< of one that is unreadable
};

/// One day of a fleet: names of recordings, one of each machine, and how to read them.
struct FleetDay {
    std::vector<std::string> names;

    /// Fills the store; otherwise returns why it cannot, in words.
    std::function<std::string(const std::string& name, StateManager& store)> load;
};

/// Machines are the same that have the same UUID, else the same model and serial number, else the same name of their
/// recordings; a key that several of one day have tells nothing. Machines of `after` come first, in its order, then
/// those that went. Each recording is read at most twice, and two are held at a time.
std::vector<FleetMachine> fleetChanges(const FleetDay& before, const FleetDay& after, bool allCategories);

}  // namespace vrx
