/// Reduces the graph to at most one link per node, by a greedy rule that favours the most constrained partner.
///
/// Every device node, then every element node, in table order, that has two links or more keeps the partner that has
/// the fewest links itself (the first of equals); the kept partner drops its other links too. Devices come first: a
/// device that several elements want goes to the element that has the fewest candidates.
///
/// What holds afterwards: every node has at most one link; every kept link was there before; a link is kept or gone on
/// both ends alike; and of a node that had links, at least one end of each of them still has one.
///
/// Devices that the graph was made to forget are in no table, so they are not reduced and may keep several links; their
/// elements, which still count them as partners, are.
///
/// Cost: a link is taken off a list in constant time, because each entry knows its counterpart's index and removal only
/// marks the entry. Parallel links (a script that was run twice, a graph merged with itself) are found beforehand, and
/// then entries are really erased and searched for from the end of the list, as the rule for them says: the last of
/// equal entries goes first, and the walk over a node's links goes by the indices of the list as it is at that moment.

#include <algorithm>
#include <utility>
#include <vector>

#include "libCommon/Assertion.h"
#include "libInventory/InventoryDeviceAssociations.h"
#include "libInventory/InventoryDeviceAssociationsNodes.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

using Associations = Inventory::InventoryDeviceAssociations;
using Uint32 = std::uint32_t;

class Associations::LinkReduction {
public:
    explicit LinkReduction(bool hasParallelLinks) noexcept : m_hasParallelLinks(hasParallelLinks) {}

    /// Whether some pair of nodes is linked more than once.
    static bool findParallelLinks(Storage& storage);

    void reduce(GraphNode& node);

    /// The same where some partners may be bundles.
    void reduceBundled(DeviceNode& node);

    /// The same for a member of a bundle.
    void reduceMember(InventoryNode& node);

    /// Puts the counterparts right after entries were erased, once every element has at most one link.
    static void renumber(Storage& storage);

private:
    void reduceTo(GraphNode& node, Uint32 leastIndex);
    void takeMember(DeviceNode& node, Bundle& bundle, Uint32 index);
    Uint32 leastLinkedPartner(const GraphNode& node) const;
    bool removeLink(GraphNode& node, const GraphNode& partner, Uint32 index);
    bool removeAllLinksExcept(GraphNode& node, const GraphNode& kept, Uint32 index);
    Uint32 lastIndexOf(const GraphNode& node, const GraphNode& partner, Uint32 index) const;
    static void logKeeping(const GraphNode& node, const GraphNode& kept);

    bool m_hasParallelLinks;
};

void Associations::removeExtraLinks() {
    Storage& storage = *m_storage;
    if (!storage.hasBranches) {
        return;
    }
    const bool hasParallelLinks = LinkReduction::findParallelLinks(storage);
    const bool hasForgottenDevices = m_deviceNodes.size() != storage.usedDeviceNodes;
    if (hasParallelLinks || hasForgottenDevices) {
        dissolveBundles();
    }
    if (hasParallelLinks) {
        storage.backUpMarkedLinks();
        storage.compact();
    }
    LinkReduction reduction(hasParallelLinks);
    for (const auto& entry : m_deviceNodes) {
        storage.bundles.empty() ? reduction.reduce(*entry.value) : reduction.reduceBundled(*entry.value);
    }
    for (const auto& entry : m_inventoryNodes) {
        entry.value->m_bundle == nullptr ? reduction.reduce(*entry.value) : reduction.reduceMember(*entry.value);
    }
    if (hasParallelLinks) {
        LinkReduction::renumber(storage);
    } else {
        storage.hasRemovedLinks = true;
    }
}

bool Associations::LinkReduction::findParallelLinks(Storage& storage) {
    for (std::size_t i = 0; i < storage.usedDeviceNodes; ++i) {
        storage.deviceNodes[i].m_mark = 0;
    }
    for (std::size_t i = 0; i < storage.usedInventoryNodes; ++i) {
        const auto mark = static_cast<Uint32>(i + 1);
        for (const GraphNode::Link& link : storage.inventoryNodes[i].m_links) {
            if (!link.isRemoved && link.partner->m_mark == mark) {
                return true;
            }
            link.partner->m_mark = link.isRemoved ? link.partner->m_mark : mark;
        }
    }
    return false;
}

void Associations::LinkReduction::reduce(GraphNode& node) {
    if (node.m_linkCount >= 2) {
        reduceTo(node, leastLinkedPartner(node));
    }
}

void Associations::LinkReduction::reduceTo(GraphNode& node, Uint32 leastIndex) {
    GraphNode& kept = *node.m_links[leastIndex].partner;
    logKeeping(node.single(), kept.single());
    for (Uint32 i = 0; i < node.m_links.size(); ++i) {
        const GraphNode::Link link = node.m_links[i];
        if (link.isRemoved) {
            continue;
        }
        if (i != leastIndex) {
            removeLink(*link.partner, node, link.counterpart);
        } else if (!removeAllLinksExcept(*link.partner, node, link.counterpart)) {
            VRX_LOG(inventoryLog(), LogPriority::Error,
                    u"removeExtraLinks: m_links[" << i << u"]->removeAllLinksExcept(this)" << u" returned false :\n"
                                                  << node.toString(1, 3));
        }
    }
    if (!removeAllLinksExcept(node, kept, leastIndex)) {
        VRX_LOG(inventoryLog(), LogPriority::Error,
                u"removeAllLinksExcept(m_links[" << leastIndex << u"]" << u" returned false :\n"
                                                 << node.toString(1, 3));
    }
    VRX_ASSERT_TEXT(node.m_linkCount == 1, "m_links.size() == 1");
}

/// A bundle counts as the members that are left in it. Each of them has as many links as the bundle, and the next to go
/// stands for it where several partners have as few.
void Associations::LinkReduction::reduceBundled(DeviceNode& node) {
    if (node.m_kept != nullptr) {
        return;
    }
    std::size_t partners = 0;
    Uint32 leastIndex = GraphNode::NONE;
    std::pair<Uint32, std::size_t> least;
    for (Uint32 i = 0; i < node.m_links.size(); ++i) {
        const GraphNode::Link& link = node.m_links[i];
        if (link.isRemoved) {
            continue;
        }
        partners += link.partner->width();
        const std::pair<Uint32, std::size_t> candidate{link.partner->m_linkCount, link.partner->position()};
        if (leastIndex == GraphNode::NONE || candidate < least) {
            leastIndex = i;
            least = candidate;
        }
    }
    if (partners < 2) {
        return;
    }
    GraphNode& kept = *node.m_links[leastIndex].partner;
    if (kept.width() > 1) {
        takeMember(node, static_cast<Bundle&>(kept), leastIndex);
    } else {
        reduceTo(node, leastIndex);
    }
}

/// The next member of the bundle goes to the device, which leaves the others without it; the device leaves all others.
void Associations::LinkReduction::takeMember(DeviceNode& node, Bundle& bundle, Uint32 index) {
    logKeeping(node, bundle.single());
    InventoryNode& member = *bundle.m_members[bundle.m_taken++];
    member.m_kept = &node;
    node.m_kept = &member;
    removeAllLinksExcept(node, bundle, index);
    bundle.m_links[node.m_links[index].counterpart].isRemoved = true;
    --bundle.m_linkCount;
}

/// What is left of a bundle after all devices have chosen has links only where it is a single member.
void Associations::LinkReduction::reduceMember(InventoryNode& node) {
    if (node.m_kept == nullptr && node.m_bundle->width() == 1) {
        reduce(*node.m_bundle);
    }
}

Uint32 Associations::LinkReduction::leastLinkedPartner(const GraphNode& node) const {
    Uint32 leastIndex = 0;
    Uint32 fewest = 0xFFFFFFFF;
    for (Uint32 i = 0; i < node.m_links.size(); ++i) {
        const GraphNode::Link& link = node.m_links[i];
        if (!link.isRemoved && link.partner->m_linkCount < fewest) {
            fewest = link.partner->m_linkCount;
            leastIndex = i;
        }
    }
    return leastIndex;
}

/// The last index at which the node's list holds the partner, or NONE. `index` is where it stands unless it was removed
/// already; that is all there is to know when no pair is linked twice.
Uint32 Associations::LinkReduction::lastIndexOf(const GraphNode& node, const GraphNode& partner, Uint32 index) const {
    if (!m_hasParallelLinks) {
        const GraphNode::Link& link = node.m_links[index];
        return !link.isRemoved && link.partner == &partner ? index : GraphNode::NONE;
    }
    for (auto i = static_cast<Uint32>(node.m_links.size()); i-- > 0;) {
        if (node.m_links[i].partner == &partner) {
            return i;
        }
    }
    return GraphNode::NONE;
}

bool Associations::LinkReduction::removeLink(GraphNode& node, const GraphNode& partner, Uint32 index) {
    const Uint32 found = lastIndexOf(node, partner, index);
    if (found == GraphNode::NONE) {
        return false;
    }
    if (m_hasParallelLinks) {
        node.m_links.erase(node.m_links.begin() + found);
        VRX_ASSERT_TEXT(node.m_links.size() == node.m_linkCount - 1, "m_links.size() == (Uint32)(links - 1)");
    } else {
        node.m_links[found].isRemoved = true;
    }
    --node.m_linkCount;
    return true;
}

/// The node's partners forget it, all but the kept one; the node forgets them. When the kept one is no partner, the
/// others forget the node all the same, the node's own list stays, and the result is false.
bool Associations::LinkReduction::removeAllLinksExcept(GraphNode& node, const GraphNode& kept, Uint32 index) {
    const Uint32 keptIndex = lastIndexOf(node, kept, index);
    for (Uint32 i = 0; i < node.m_links.size(); ++i) {
        const GraphNode::Link link = node.m_links[i];
        if (i != keptIndex && !link.isRemoved) {
            removeLink(*link.partner, node, link.counterpart);
            node.m_links[i].isRemoved = !m_hasParallelLinks && keptIndex != GraphNode::NONE;
        }
    }
    if (keptIndex == GraphNode::NONE) {
        return false;
    }
    if (m_hasParallelLinks) {
        const GraphNode::Link keptLink = node.m_links[keptIndex];
        node.m_links.clear();
        node.m_links.push_back(keptLink);
    }
    node.m_linkCount = 1;
    return true;
}

void Associations::LinkReduction::renumber(Storage& storage) {
    std::for_each_n(storage.deviceNodes.begin(), storage.usedDeviceNodes, [](GraphNode& node) {
        for (Uint32 i = 0; i < node.m_links.size(); ++i) {
            node.m_links[i].counterpart = 0;
            node.m_links[i].partner->m_links[0].counterpart = i;
        }
    });
}

// The ends of a link are renumbered one after the other: first those in the lists of the elements, which say where the
// link will stand in its device's list, then the others.
void Associations::Storage::compact() {
    if (!hasRemovedLinks) {
        return;
    }
    const auto compactNode = [](GraphNode& node) {
        Uint32 kept = 0;
        for (const GraphNode::Link link : node.m_links) {
            if (!link.isRemoved) {
                link.partner->m_links[link.counterpart].counterpart = kept;
                node.m_links[kept++] = link;
            }
        }
        node.m_links.erase(node.m_links.begin() + kept, node.m_links.end());
    };
    std::for_each_n(deviceNodes.begin(), usedDeviceNodes, compactNode);
    std::for_each_n(inventoryNodes.begin(), usedInventoryNodes, compactNode);
    hasRemovedLinks = false;
}

void Associations::Storage::backUpMarkedLinks() {
    if (!mark || mark->hasLinks) {
        return;
    }
    auto count = mark->linkCounts.begin();
    const auto copyLinks = [&](const GraphNode& node) {
        const auto begin = node.m_links.begin();
        mark->links.insert(mark->links.end(), begin, begin + *count++);
    };
    std::for_each_n(inventoryNodes.begin(), mark->inventoryNodes, copyLinks);
    std::for_each_n(deviceNodes.begin(), mark->deviceNodes, copyLinks);
    for (GraphNode::Link& link : mark->links) {
        link.isRemoved = false;
    }
    mark->hasLinks = true;
}

void Associations::LinkReduction::logKeeping(const GraphNode& node, const GraphNode& kept) {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    const std::vector<const GraphNode*> partners = node.partners();
    const auto position = std::find(partners.begin(), partners.end(), &kept) - partners.begin();
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"removeExtraLinks() \n\t this = " << node.toString(1, 3) << u" \n\t keeping: leastIndex = " << position
                                               << u" : " << kept.toString(1, 3));
}

}  // namespace vrx
