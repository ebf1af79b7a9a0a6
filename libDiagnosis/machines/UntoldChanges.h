#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libDiagnosis/MachineChanges.h"

namespace vrx {

/// Tells what changed from what only one of two recordings could tell of: a disk that came is none when the recording
/// before it is of a format without disks. The machines are borrowed.
class UntoldChanges {
public:
    /// What was not compared.
    struct Count {
        std::size_t devices = 0;  ///< in one recording only, and the other cannot tell of them
        std::size_t values = 0;   ///< properties likewise

        bool isNone() const noexcept { return devices == 0 && values == 0; }
    };

    UntoldChanges(const StateManager& before, const StateManager& after) : m_before(before), m_after(after) {}

    /// Whether the device is in one of the recordings, and the other may lack it though it was there.
    bool isDeviceUntold(const DeviceChange& change) const;

    /// Whether one of the recordings has no such property, and may lack it though it was there. Requires: the device is
    /// in both.
    bool isValueUntold(const DeviceChange& change, const ValueChange& value);

    /// Takes what is untold out of all changes between the two.
    Count takeOut(std::vector<DeviceChange>& changes);

private:
    bool hasKey(const StateManager& machine, const CapabilityImp& type, StringView key);

    const StateManager& m_before;
    const StateManager& m_after;
    std::unordered_map<String, bool, HashFunc<String>> m_hasKey;  // by machine, type and key
};

}  // namespace vrx
