#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The tree of device types behind CapabilityImp: the system's own table, and below it what a host defined.
///
/// Nodes are numbered in table order from 1 on; 0 is "no node". A node's number is always greater than its parent's.
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
    std::size_t size() const noexcept { return m_nodes.size(); }

    /// The node above; 0 for one at the top. Requires: node < size().
    Node parentOf(Node node) const noexcept { return m_nodes[node].parent; }

    /// The canonical name. Requires: node < size().
    const String& nameOf(Node node) const noexcept { return m_nodes[node].name; }

    /// Whether `node` is `ancestor` or stands below it. Requires: both < size().
    bool isWithin(Node node, Node ancestor) const noexcept {
        while (node > ancestor) {
            node = m_nodes[node].parent;
        }
        return node == ancestor;
    }

private:
    CapabilityTree();
    Node append(StringView name, Node parent);
    void enterName(StringView name, Node node);

    struct NodeData {
        String name;
        Node parent;
    };
    std::vector<NodeData> m_nodes;
    boost::unordered_flat_map<String, Node, HashFunc<String>> m_byFoldedName;
};

}  // namespace vrx
