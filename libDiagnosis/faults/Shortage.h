#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

#include "libDiagnosis/Difference.h"
#include "libInventory/Inventory.h"

namespace vrx {

class WantedDevices;

/// Elements that compete for too few devices. However many they are, the lists hold the first hundred at most.
struct Shortage {
    std::size_t elements = 0;
    std::size_t devices = 0;
    std::vector<ElementPlace> elementPlaces;
    std::vector<Inventory::DeviceSpec> deviceSpecs;
    bool isOfOneKind = true;  ///< all of them ask for the same
};

/// Tells of elements without a device in which shortage each is. Those that ask for the same are in the same one; after
/// a hundred different ones no more are looked for.
class Shortages {
public:
    Shortages(const Inventory& inventory, WantedDevices& asked) : m_inventory(inventory), m_asked(asked) {}

    /// None for an element that no device meets.
    std::optional<Shortage> of(const XmlElement& element);

private:
    std::optional<Shortage> shortageOf(const Competition& competition, std::size_t sort);

    const Inventory& m_inventory;
    WantedDevices& m_asked;
    std::unordered_map<std::size_t, std::optional<Shortage>> m_known;  ///< by what is asked for, and where
};

}  // namespace vrx
