#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <vector>

#include "libInventory/InventoryDeviceAssociationsLinks.h"
#include "libInventory/engine/assignment/ExactAssignment.h"
#include "libInventory/engine/findings/RunRecord.h"

namespace vrx {

struct InventoryState;

/// Which device each element gets in the combination whose links are in the working graph.
class LinkAssignment {
public:
    explicit LinkAssignment(InventoryState& state) noexcept : m_state(state) {}

    /// Leaves every element and every device one link at most: greedily, and exactly where the run assigns exactly and
    /// that leaves less undone. A run that may do so later learns whether it could gain by it.
    void settle();

    /// What an exact assignment would leave each element of the working graph, when it is made wherever it can be.
    RunRecord::Links exactLinks();

private:
    using Need = ExactAssignment::Need;

    bool leavesSomethingUndone();
    std::vector<boost::shared_ptr<IDeviceImp>> uncovered();
    boost::unordered_flat_set<const IDeviceImp*> toBeForgotten() const;
    void assignExactly();
    std::vector<Need> needsOf(const NamedLinks& named) const;
    Need needOf(const XmlElement& element) const;
    bool isMet(const XmlElement& element) const;
    std::vector<bool> watchedAmong(const NamedLinks& named);

    InventoryState& m_state;
};

}  // namespace vrx
