#pragma once

#include <array>
#include <atomic>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <shared_mutex>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The tree of device types behind CapabilityImp: the system's own table, and below it what a host defined.
///
/// Nodes are numbered in table order from 1 on; 0 is "no node". A node's number is always greater than its parent's.
///
/// Serves all threads. The system's own types never change and are read without a lock; a host's are locked, but for
/// their parents, which are in their place before anybody can learn the number of the node.
class CapabilityTree {
public:
    using Node = std::uint16_t;

    /// The one tree of the process; its first use fills in the table.
    static CapabilityTree& instance();

    /// The node of that name or alias, without letter case; 0 when there is none.
    Node find(StringView name) const;

    /// Adds a node after all others. False, changing nothing, when the name is empty, taken or reserved, the parent is
    /// 0 or the tree is full.
    bool define(const String& name, Node parent);

    /// One more than the greatest node number.
    std::size_t size() const noexcept { return m_size.load(std::memory_order_acquire); }

    /// The node above; 0 for one at the top. Requires: node < size().
    Node parentOf(Node node) const noexcept { return m_parents[node]; }

    /// The canonical name; it stays where it is. Requires: node < size().
    const String& nameOf(Node node) const;

    /// Whether `node` is `ancestor` or stands below it. Requires: both < size().
    bool isWithin(Node node, Node ancestor) const noexcept {
        while (node > ancestor) {
            node = m_parents[node];
        }
        return node == ancestor;
    }

private:
    /// Numbers from here on have meanings of their own in CapabilityImp.
    static constexpr std::size_t MAXIMUM_SIZE = 0xFFFE;

    using NodesByName = boost::unordered_flat_map<String, Node, HashFunc<String>>;

    CapabilityTree();
    Node append(Node parent);
    static void enterName(NodesByName& nodes, String foldedName, Node node);
    Node findOwn(const String& foldedName) const;

    std::atomic<std::size_t> m_size = 1;
    std::array<Node, MAXIMUM_SIZE> m_parents;  ///< as many as m_size; the rest is untouched memory
    std::vector<String> m_ownNames;            ///< by node
    NodesByName m_ownByFoldedName;

    mutable std::shared_mutex m_mutex;  ///< guards what a host defined
    std::atomic<bool> m_hasDefined = false;
    std::deque<String> m_definedNames;  ///< by node, from the first that is not the system's own
    NodesByName m_definedByFoldedName;
};

}  // namespace vrx
