#pragma once

#include <boost/container/small_vector.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

#include "libCommon/text/String.h"
#include "libInventory/InventoryDeviceAssociations.h"

/// The nodes of the association graph.
///
/// A link stands in the lists of both ends. Each entry also knows the index of its counterpart in the partner's list,
/// so that taking a link off both ends needs no search. A link that a reduction takes away is only marked as removed:
/// the indices of the others stay what they are, and the graph can go back to what it was.
///
/// Elements that one list of devices was given to have their links in common: the devices are linked to a bundle, and
/// the elements are its members. A reduction takes members out of it one by one. Until then all members have the same
/// links, and whoever takes a device from one takes it from all.
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

    /// How many nodes it stands for.
    virtual std::size_t width() const noexcept { return 1; }

    /// Where its element stands among the others; that of the next one to go for a bundle.
    virtual std::size_t position() const noexcept { return 0; }

    /// The node itself; the next one to go for a bundle.
    virtual const GraphNode& single() const noexcept { return *this; }

    /// Number of links, without removed ones.
    std::uint32_t linkCount() const noexcept { return m_linkCount; }

    /// The entries of the list, with removed ones.
    const Links& links() const noexcept { return m_links; }

protected:
    /// The nodes at the other ends of the links, those of bundles one by one.
    virtual std::vector<const GraphNode*> partners() const;
    virtual void appendNodes(std::vector<const GraphNode*>& nodes) const { nodes.push_back(this); }

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
    std::uint32_t m_mark = 0;  ///< scratch of walks over the links
};

class Inventory::InventoryDeviceAssociations::InventoryNode : public GraphNode {
public:
    String toString(unsigned indent, unsigned depth) const override;

    std::size_t position() const noexcept override { return m_position; }

    /// Number of links, without removed ones; those of its bundle included.
    std::uint32_t linkCount() const noexcept;

    /// All links, with removed ones, wherever they are.
    const Links& allLinks() const noexcept;

    /// Calls `visit` with the device node of each link, in order, without removed ones.
    template <typename Visit>
    void forEachLink(const Visit& visit) const;

    const XmlElement* element() const noexcept { return m_element; }
    bool hasEverMatched() const noexcept { return m_hasEverMatched; }

private:
    friend class InventoryDeviceAssociations;
    std::vector<const GraphNode*> partners() const override;
    void reset(const XmlElement* element, std::uint32_t position) noexcept {
        forgetLinks();
        m_element = element;
        m_bundle = nullptr;
        m_kept = nullptr;
        m_position = position;
        m_hasEverMatched = false;
    }

    const XmlElement* m_element = nullptr;
    Bundle* m_bundle = nullptr;    ///< that it is a member of; it has no links of its own then
    DeviceNode* m_kept = nullptr;  ///< for which a reduction took it out of the bundle
    std::uint32_t m_position = 0;  ///< among the nodes of the storage
    bool m_hasEverMatched = false;
};

class Inventory::InventoryDeviceAssociations::DeviceNode : public GraphNode {
public:
    String toString(unsigned indent, unsigned depth) const override;

    const boost::shared_ptr<IDeviceImp>& device() const noexcept { return m_device; }

private:
    friend class InventoryDeviceAssociations;
    std::vector<const GraphNode*> partners() const override;
    void reset(const boost::shared_ptr<IDeviceImp>& device) noexcept {
        forgetLinks();
        m_kept = nullptr;
        m_device = device;
    }

    boost::shared_ptr<IDeviceImp> m_device;
    InventoryNode* m_kept = nullptr;  ///< what a reduction took out of a bundle for it
};

class Inventory::InventoryDeviceAssociations::Bundle : public GraphNode {
public:
    explicit Bundle(SharedDevices devices) : m_devices(std::move(devices)) {}

    std::size_t width() const noexcept override { return m_members.size() - m_taken; }
    std::size_t position() const noexcept override { return single().position(); }
    const GraphNode& single() const noexcept override { return *m_members[m_taken]; }

    /// Whether no reduction has changed anything.
    bool isWhole() const noexcept { return m_taken == 0 && linkCount() == links().size(); }

private:
    friend class InventoryDeviceAssociations;
    friend class LinkReduction;
    void appendNodes(std::vector<const GraphNode*>& nodes) const override;

    SharedDevices m_devices;
    std::vector<InventoryNode*> m_members;  ///< in order
    std::size_t m_taken = 0;                ///< so many of them have a device of their own
};

template <typename Visit>
void Inventory::InventoryDeviceAssociations::InventoryNode::forEachLink(const Visit& visit) const {
    if (m_kept != nullptr) {
        visit(*m_kept);
        return;
    }
    for (const Link& link : allLinks()) {
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
    std::deque<Bundle> bundles;
    std::size_t usedInventoryNodes = 0;
    std::size_t usedDeviceNodes = 0;

    /// The bundles that elements may still join, by their lists.
    boost::unordered_flat_map<const void*, Bundle*> openBundles;

    /// Whether there may be bundles: not after they had to be dissolved, since links are in other than their order
    /// then.
    bool allowsBundles = true;

    /// Whether some node has, or had, two links or more. Without any there is nothing to reduce.
    bool hasBranches = false;

    /// Position of the element that is probably asked for next: a run asks in the order in which it made the nodes.
    std::size_t expected = 0;

    /// Whether some link is marked as removed.
    bool hasRemovedLinks = false;

    /// What the graph was at the last mark: so many of the nodes, and so many links of each: elements, devices,
    /// bundles.
    struct Mark {
        std::size_t inventoryNodes = 0;
        std::size_t deviceNodes = 0;
        std::size_t bundles = 0;
        bool hasBranches = false;
        std::vector<std::uint32_t> linkCounts;
        std::vector<bool> everMatched;

        /// The links themselves, one node after the other, once a reduction has really erased some.
        std::vector<GraphNode::Link> links;
        bool hasLinks = false;
    };
    std::optional<Mark> mark;

    /// Puts a link at the end of both lists.
    void link(GraphNode& inventoryNode, GraphNode& deviceNode);

    /// Whether no element was made known after that one.
    bool isLatest(const InventoryNode& node) const noexcept { return node.position() + 1 == usedInventoryNodes; }

    std::vector<std::vector<GraphNode*>> takeLinks();
    void countMarkedLinks();
    void removeAllLinks();

    /// Drops the links that are marked as removed. Requires: there are no bundles, or no reduction was made.
    void compact();

    /// Copies the links that `mark` counts, unless it has them.
    void backUpMarkedLinks();
};

}  // namespace vrx
