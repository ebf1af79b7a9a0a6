#pragma once

#include "libInventory/Finding.h"

namespace vrx {

class KeptLinks;
struct InventoryState;

/// See Inventory::competitionFor.
Competition findCompetition(const InventoryState& state, const KeptLinks& links, const XmlElement& element);

}  // namespace vrx
