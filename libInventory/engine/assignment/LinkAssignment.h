#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstdint>
#include <vector>

#include "libInventory/InventoryDeviceAssociationsLinks.h"
#include "libInventory/engine/assignment/Matching.h"

namespace vrx {

struct InventoryState;

/// Which device each element gets in the combination whose links are in the working graph.
class LinkAssignment {
public:
    explicit LinkAssignment(InventoryState& state) noexcept : m_state(state) {}

    /// Leaves every element and every device one link at most: greedily, and exactly where the run assigns exactly and
    /// that leaves less undone. A run that may do so later learns whether it could gain by it.
    void settle();

private:
    using Pair = AssociationLinks::Pair;
    using GroupOf = boost::unordered_flat_map<const XmlElement*, Matching::Index>;

    /// What a group of elements needs devices for.
    enum class Need : std::uint8_t {
        Nothing,  ///< under a `not`, in a part that is not met: what it has is forgotten
        Cover,    ///< under a `not`: only so that what it describes is not extra
        Device    ///< it has to have them
    };

    bool leavesSomethingUndone();
    std::vector<boost::shared_ptr<IDeviceImp>> uncovered();
    boost::unordered_flat_set<const IDeviceImp*> toBeForgotten() const;
    void assignExactly();
    void splitByNeed(AssociationLinks& links);
    Need needOf(const XmlElement& element) const;
    bool isMet(const XmlElement& element) const;
    std::vector<bool> groupsThatNeed(Need least) const;
    std::vector<bool> watchedAmong(const AssociationLinks& links);
    void take(const AssociationLinks& links, const Matching& matching, const GroupOf& groupOf);

    InventoryState& m_state;
    std::vector<Need> m_needs;  ///< of each group
};

}  // namespace vrx
