#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// Something of a device that is not what it was.
struct ValueChange {
    enum class What { Name, OsLocator, Capabilities, Property };

    What what;
    String key;                    ///< of a property; else empty
    std::optional<String> before;  ///< none for a property that came new
    std::optional<String> after;   ///< none for a property that went away
};

/// A device that is not what or where it was. Devices are borrowed.
struct DeviceChange {
    const IDeviceImp* before = nullptr;  ///< null for a device that came new
    const IDeviceImp* after = nullptr;   ///< null for a device that went away
    std::vector<ValueChange> values;     ///< empty unless it is in both

    /// Whether it is in both, at another hardware locator.
    bool isMoved() const;

    /// Whether it is the same in both but for the name that the kernel gave it.
    bool isOnlyRenamed() const;
};

/// What differs between two machines: devices of `after` in its order, then those that only `before` has. Equal
/// machines give an empty list, whatever the order of their devices.
///
/// Properties that are Volatile, Internal or Group in either machine are compared only with `allCategories`.
///
///     for (const DeviceChange& change : machineChanges(yesterday, today, false)) {
///         show(change.before == nullptr ? "came" : change.after == nullptr ? "went" : "changed");
///     }
std::vector<DeviceChange> machineChanges(const StateManager& before, const StateManager& after, bool allCategories);

}  // namespace vrx
