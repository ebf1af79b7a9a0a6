#pragma once

#include <unordered_map>
#include <unordered_set>

#include "libDiagnosis/Fault.h"
#include "libDiagnosis/WantedDevices.h"
#include "libInventory/Inventory.h"

namespace vrx {

/// Elements that ask for the same part, names, places and serial numbers aside: of one that has no device it says how
/// many of its kind are there. Elements in a `not` or an `or` are left aside.
class LikeElements {
public:
    /// Looks at elements of the types of those that have none.
    LikeElements(const Inventory& inventory, WantedDevices& asked);

    LikeDevices of(const XmlElement& element);

private:
    struct Group {
        LikeDevices devices;
        const XmlElement* present = nullptr;  ///< the first that has a device
    };

    const Inventory& m_inventory;
    WantedDevices& m_asked;
    std::unordered_map<std::size_t, Group> m_groups;  ///< by kind
};

}  // namespace vrx
