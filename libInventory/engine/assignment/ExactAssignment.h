#pragma once

#include <cstdint>
#include <vector>

#include "libInventory/InventoryDeviceAssociationsLinks.h"
#include "libInventory/engine/assignment/Matching.h"

namespace vrx {

/// Which device each element gets, when that is chosen exactly: a matching that starts from what the reduction chose,
/// so that only what has to be different is.
class ExactAssignment {
public:
    using Pair = AssociationLinks::Pair;

    /// What an element needs a device for.
    enum class Need : std::uint8_t {
        Nothing,  ///< under a `not`, in a part that is not met: what it has is forgotten
        Cover,    ///< under a `not`: only so that what it describes is not extra
        Device    ///< it has to have one
    };

    /// `needs` is by element, `isWatched` by device: those that should not be left over. All is borrowed, and the
    /// groups are split until the elements of each need the same.
    ExactAssignment(AssociationLinks& links, const std::vector<Need>& needs, const std::vector<bool>& isWatched);

    /// Whether it is another choice than the reduction's.
    bool isOther() const noexcept { return m_keptPairs != m_links.kept.size() || m_pairs.size() != m_keptPairs; }

    const std::vector<Pair>& pairs() const noexcept { return m_pairs; }

    /// The elements that need a device and only have one because of the choice.
    std::vector<std::uint32_t> newlyServed() const;

private:
    void splitByNeed();
    void numberGroups();
    void giveKept(Matching& matching, Need need) const;
    std::vector<bool> groupsThatNeed(Need least) const;
    void pairUp(const Matching& matching);

    AssociationLinks& m_links;
    const std::vector<Need>& m_needs;
    std::vector<Need> m_groupNeeds;
    std::vector<Matching::Index> m_groupOf;  ///< by element
    std::vector<bool> m_had;                 ///< by element: what the reduction left it with
    std::vector<Pair> m_pairs;
    std::size_t m_keptPairs = 0;  ///< so many of them, which come first, are the reduction's
};

}  // namespace vrx
