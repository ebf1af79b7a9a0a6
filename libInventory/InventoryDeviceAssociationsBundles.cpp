/// Elements that share their links: joining a bundle, and what cannot be done with bundles.
///
/// A bundle stands in the lists of its devices once, where its first member would; the others would follow later, each
/// where it was made known. So a bundle needs no more to know than the order of the elements, as long as every element
/// gets its links before the next one is made known. Where that ends, and where each link is wanted by itself (for the
/// log, and where pairs are linked twice), the bundles are dissolved, and the graph is what it would be without them.

#include <algorithm>
#include <vector>

#include "libCommon/Assertion.h"
#include "libInventory/InventoryDeviceAssociations.h"
#include "libInventory/InventoryDeviceAssociationsNodes.h"

namespace vrx {

using Associations = Inventory::InventoryDeviceAssociations;

namespace {

constexpr std::size_t SHARED_FROM = 2;  // devices; a single link is cheaper by itself

}  // namespace

void Associations::associateAgain(const XmlElement* element, const SharedDevices& devices) {
    VRX_ASSERT_TEXT(element, "invElement");
    Storage& storage = *m_storage;
    InventoryNode& node = nodeOf(element);
    const bool isNew = storage.isLatest(node) && node.allLinks().empty();
    const bool mayShare = isNew && storage.allowsBundles && !storage.hasRemovedLinks;
    if (!mayShare || devices->size() < SHARED_FROM) {
        for (const boost::shared_ptr<IDeviceImp>& device : *devices) {
            connect(node, device);
        }
        return;
    }
    node.m_bundle = &bundleOf(devices);
    node.m_bundle->m_members.push_back(&node);
    node.m_hasEverMatched = true;
    storage.hasBranches = true;
}

Associations::Bundle& Associations::bundleOf(const SharedDevices& devices) {
    Bundle*& bundle = m_storage->openBundles[devices.get()];
    if (bundle == nullptr) {
        bundle = &m_storage->bundles.emplace_back(devices);
        for (const boost::shared_ptr<IDeviceImp>& device : *devices) {
            m_storage->link(*bundle, nodeOf(device));
        }
    }
    return *bundle;
}

/// Before an element gets a link of its own.
void Associations::keepInOrder(const InventoryNode& inventoryNode) {
    Storage& storage = *m_storage;
    const bool staysInOrder = storage.isLatest(inventoryNode) && inventoryNode.m_bundle == nullptr;
    if (!staysInOrder || (storage.hasRemovedLinks && !storage.bundles.empty())) {
        dissolveBundles();
        storage.allowsBundles = false;
    }
}

/// Links all elements anew, each by itself, and reduces the graph again when it was.
void Associations::dissolveBundles() {
    Storage& storage = *m_storage;
    if (storage.bundles.empty()) {
        return;
    }
    const bool wasReduced = storage.hasRemovedLinks;
    const std::vector<std::vector<GraphNode*>> partners = storage.takeLinks();
    storage.allowsBundles = false;
    const std::size_t marked = storage.mark ? storage.mark->inventoryNodes : partners.size();
    for (std::size_t i = 0; i < partners.size(); ++i) {
        if (i == marked) {
            storage.countMarkedLinks();
        }
        for (GraphNode* const device : partners[i]) {
            storage.link(storage.inventoryNodes[i], *device);
        }
    }
    if (storage.mark && marked == partners.size()) {
        storage.countMarkedLinks();
    }
    if (wasReduced) {
        removeExtraLinks();
    }
}

/// Takes all links and bundles away; returns the devices of each element.
std::vector<std::vector<Associations::GraphNode*>> Associations::Storage::takeLinks() {
    std::vector<std::vector<GraphNode*>> partners(usedInventoryNodes);
    for (std::size_t i = 0; i < usedInventoryNodes; ++i) {
        for (const GraphNode::Link& link : inventoryNodes[i].allLinks()) {
            partners[i].push_back(link.partner);
        }
    }
    std::for_each_n(inventoryNodes.begin(), usedInventoryNodes, [](InventoryNode& node) {
        node.forgetLinks();
        node.m_bundle = nullptr;
        node.m_kept = nullptr;
    });
    std::for_each_n(deviceNodes.begin(), usedDeviceNodes, [](DeviceNode& node) {
        node.forgetLinks();
        node.m_kept = nullptr;
    });
    bundles.clear();
    openBundles.clear();
    hasRemovedLinks = false;
    return partners;
}

/// Takes down how many links the marked nodes have now. Requires: there is a mark, and there are no bundles.
void Associations::Storage::countMarkedLinks() {
    mark->bundles = 0;
    mark->linkCounts.clear();
    const auto count = [this](const GraphNode& node) {
        mark->linkCounts.push_back(node.linkCount());
    };
    std::for_each_n(inventoryNodes.begin(), mark->inventoryNodes, count);
    std::for_each_n(deviceNodes.begin(), mark->deviceNodes, count);
}

std::uint32_t Associations::InventoryNode::linkCount() const noexcept {
    if (m_kept != nullptr) {
        return 1;
    }
    return m_bundle != nullptr ? m_bundle->linkCount() : GraphNode::linkCount();
}

const Associations::GraphNode::Links& Associations::InventoryNode::allLinks() const noexcept {
    return m_bundle != nullptr ? m_bundle->links() : links();
}

}  // namespace vrx
