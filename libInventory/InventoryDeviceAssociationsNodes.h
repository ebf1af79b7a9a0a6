#pragma once

#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "libCommon/text/String.h"
#include "libInventory/InventoryDeviceAssociations.h"

/// The nodes of the association graph.
///
/// A link stands in the lists of both ends. Each entry also knows the index of its counterpart in the partner's list,
/// so that taking a link off both ends needs no search. A link that a reduction takes away is only marked as removed:
/// the indices of the others stay what they are, and the graph can go back to what it was.
namespace vrx {

class Inventory::InventoryDeviceAssociations::GraphNode {
public:
    struct Link {
        GraphNode* partner;
        std::uint32_t counterpart;  ///< index of the same link in the partner's list
        bool isRemoved = false;     ///< a reduction took it away; it counts for nothing
    };
    using Links = boost::container::small_vector<Link, 2>;
    static constexpr std::uint32_t NONE = 0xFFFFFFFF;

    GraphNode() = default;
    virtual ~GraphNode() = default;
    GraphNode(const GraphNode&) = delete;
    GraphNode& operator=(const GraphNode&) = delete;

    /// The node, then its partners one level further in, until `depth` is used up; empty when `depth` is 0.
    virtual String toString(unsigned indent, unsigned depth) const;

    /// Number of links, without removed ones.
    std::uint32_t linkCount() const noexcept { return m_linkCount; }

    /// The entries of the list, with removed ones.
    const Links& links() const noexcept { return m_links; }

protected:
    void forgetLinks() noexcept {
        m_links.clear();
        m_linkCount = 0;
    }
    void setLinks(const Link* begin, const Link* end) {
        m_links.assign(begin, end);
        m_linkCount = static_cast<std::uint32_t>(end - begin);
    }

    /// Makes the list its first entries again, none of them removed.
    void restoreLinks(std::size_t count) {
        m_links.erase(m_links.begin() + static_cast<std::ptrdiff_t>(count), m_links.end());
        for (Link& link : m_links) {
            link.isRemoved = false;
        }
        m_linkCount = static_cast<std::uint32_t>(count);
    }

private:
    friend class InventoryDeviceAssociations;
    friend class LinkReduction;
    friend struct Storage;

    Links m_links;
    std::uint32_t m_linkCount = 0;
    std::uint32_t m_mark = 0;  ///< scratch of the search for parallel links
};

class Inventory::InventoryDeviceAssociations::InventoryNode : public GraphNode {
public:
    String toString(unsigned indent, unsigned depth) const override;

    /// Calls `visit` with the device node of each link, in order, without removed ones.
    template <typename Visit>
    void forEachLink(const Visit& visit) const;

    const XmlElement* element() const noexcept { return m_element; }
    bool hasEverMatched() const noexcept { return m_hasEverMatched; }

private:
    friend class InventoryDeviceAssociations;
    void reset(const XmlElement* element, std::uint32_t position) noexcept {
        forgetLinks();
        m_element = element;
        m_position = position;
        m_hasEverMatched = false;
    }

    const XmlElement* m_element = nullptr;
    std::uint32_t m_position = 0;  ///< among the nodes of the storage
    bool m_hasEverMatched = false;
};

class Inventory::InventoryDeviceAssociations::DeviceNode : public GraphNode {
public:
    String toString(unsigned indent, unsigned depth) const override;

    const boost::shared_ptr<IDeviceImp>& device() const noexcept { return m_device; }

private:
    friend class InventoryDeviceAssociations;
    void reset(const boost::shared_ptr<IDeviceImp>& device) noexcept {
        forgetLinks();
        m_device = device;
    }

    boost::shared_ptr<IDeviceImp> m_device;
};

template <typename Visit>
void Inventory::InventoryDeviceAssociations::InventoryNode::forEachLink(const Visit& visit) const {
    for (const Link& link : links()) {
        if (!link.isRemoved) {
            visit(static_cast<const DeviceNode&>(*link.partner));
        }
    }
}

/// Owner of all nodes, those that left the tables included: links may still refer to them. Nodes are used again after
/// a clear, with the memory of their lists, because a run clears and fills a graph for every combination that it tries.
struct Inventory::InventoryDeviceAssociations::Storage {
    std::deque<InventoryNode> inventoryNodes;
    std::deque<DeviceNode> deviceNodes;
    std::size_t usedInventoryNodes = 0;
    std::size_t usedDeviceNodes = 0;

    /// Whether some node has, or had, two links or more. Without any there is nothing to reduce.
    bool hasBranches = false;

    /// Position of the element that is probably asked for next: a run asks in the order in which it made the nodes.
    std::size_t expected = 0;

    /// Whether some link is marked as removed.
    bool hasRemovedLinks = false;

    /// What the graph was at the last mark: so many of the nodes, and so many links of each, elements first.
    struct Mark {
        std::size_t inventoryNodes = 0;
        std::size_t deviceNodes = 0;
        bool hasBranches = false;
        std::vector<std::uint32_t> linkCounts;
        std::vector<bool> everMatched;

        /// The links themselves, one node after the other, once a reduction has really erased some.
        std::vector<GraphNode::Link> links;
        bool hasLinks = false;
    };
    std::optional<Mark> mark;

    /// Drops the links that are marked as removed.
    void compact();

    /// Copies the links that `mark` counts, unless it has them.
    void backUpMarkedLinks();
};

}  // namespace vrx
