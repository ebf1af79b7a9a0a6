#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libDiagnosis/Difference.h"
#include "libInventory/Inventory.h"

namespace vrx {

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
    explicit Shortages(const Inventory& inventory) : m_inventory(inventory) {}

    /// None for an element that no device meets.
    std::optional<Shortage> of(const XmlElement& element);

private:
    const Inventory& m_inventory;
    std::unordered_map<String, std::optional<Shortage>, HashFunc<String>> m_known;
};

}  // namespace vrx
