#pragma once

#include <vector>

#include "libInventory/engine/InventoryState.h"

namespace vrx {

/// What a run is like before its first combination, to try all of them once more from there.
class RunStart {
public:
    /// Requires: the first pass has been made, of the first run of the script.
    explicit RunStart(const InventoryState& state);

    /// Undoes what the combinations left behind.
    void restore(InventoryState& state) const;

private:
    std::vector<std::uint32_t> m_selectedChildren;  ///< of the `or` elements, in document order
    Inventory::DeviceToPartsTable m_parts;
};

}  // namespace vrx
