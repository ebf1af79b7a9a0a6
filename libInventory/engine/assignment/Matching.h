#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libInventory/InventoryDeviceAssociationsLinks.h"

namespace vrx {

/// Which group of elements has which devices: a device belongs to one group at most, and a group has as many devices as
/// elements at most. Groups and devices are told by their positions in the links, which are borrowed.
class Matching {
public:
    using Index = std::uint32_t;
    static constexpr Index NONE = 0xFFFFFFFF;

    explicit Matching(const AssociationLinks& links);

    /// Requires: the group has a link to the device and room for it.
    void give(Index device, Index group);

    Index groupOf(Index device) const { return m_groupOf[device]; }
    bool hasRoom(Index group) const { return m_used[group] < m_links.groups[group].elements.size(); }

    /// Gives devices to the groups for which `takesPart` holds, until no more of their elements can have one. An
    /// element that has a device keeps one, maybe another. Requires: no other group has devices.
    void complete(const std::vector<bool>& takesPart);

    /// Sees that groups have as many of the wanted devices as can be, without taking any from an element that has one
    /// but in exchange.
    void cover(const std::vector<bool>& isWanted, const std::vector<bool>& takesPart);

private:
    class Layers;
    class Exchange;

    const AssociationLinks& m_links;
    std::vector<Index> m_groupOf;
    std::vector<std::size_t> m_used;
};

}  // namespace vrx
