#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libDiagnosis/AskedProperty.h"
#include "libInventory/Inventory.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

class DeviceTrial;

/// What one `device` element asks for.
struct WantedDevice {
    Inventory::DeviceSpec spec;  ///< the name is a pattern
    CapabilityImp type;
    std::shared_ptr<const std::vector<AskedProperty>> properties;
    bool hasIdentity = false;    ///< some property tells the device from all others
    std::size_t sort = 0;        ///< equal for elements that ask for the same device, wherever it stands
    std::size_t placedSort = 0;  ///< equal for those that ask for it at the same place as well
};

/// What the `device` elements of a script ask for, read off each of them once and when somebody asks. Elements are
/// known by where they stand, so that one of these serves all copies of a script, one check after the other:
///
///     WantedDevices asked;
///     for (...) {
///         inventory.loadInventoryScript(loaded);
///         inventory.run();
///         diagnose(inventory, machine, certainty, asked);
///     }
///
/// Requires: all elements are of copies of one parsed script. Each thread has one of its own.
class WantedDevices {
public:
    WantedDevices();
    ~WantedDevices();
    WantedDevices(WantedDevices&&) noexcept;

    /// Valid as long as this object is.
    const WantedDevice& of(const XmlElement& device);

    /// One for each sort; valid as long.
    const DeviceTrial& trialOf(const XmlElement& device);

    /// Equal for elements that ask for the same part: names, places and what identifies it aside.
    std::size_t kindOf(const XmlElement& device);

private:
    using Numbers = std::unordered_map<String, std::size_t, HashFunc<String>>;

    static std::size_t numberOf(const String& key, Numbers& numbers);
    WantedDevice read(const XmlElement& device);

    std::unordered_map<std::uint64_t, WantedDevice> m_devices;  ///< by place
    std::unordered_map<std::uint64_t, std::size_t> m_kinds;     ///< likewise
    Numbers m_kindNumbers;
    Numbers m_sortNumbers;
    Numbers m_placedNumbers;
    std::vector<std::unique_ptr<const DeviceTrial>> m_trials;  ///< by sort; made when somebody asks
};

}  // namespace vrx
