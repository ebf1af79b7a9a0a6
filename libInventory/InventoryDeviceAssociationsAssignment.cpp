/// The links of the graph for another choice than the reduction's, and that choice put in the place of what it left.

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>

#include "libCommon/Assertion.h"
#include "libInventory/InventoryDeviceAssociations.h"
#include "libInventory/InventoryDeviceAssociationsLinks.h"
#include "libInventory/InventoryDeviceAssociationsNodes.h"

namespace vrx {

using Associations = Inventory::InventoryDeviceAssociations;

NamedLinks Associations::links() {
    NamedLinks named;
    AssociationLinks& links = named.links;
    Storage& storage = *m_storage;
    for (std::uint32_t i = 0; i < storage.usedDeviceNodes; ++i) {
        storage.deviceNodes[i].m_mark = i;
        named.devices.push_back(storage.deviceNodes[i].device());
    }
    boost::unordered_flat_map<const Bundle*, std::size_t> groupOfBundle;
    for (const auto& entry : m_inventoryNodes) {
        const InventoryNode& node = *entry.value;
        std::size_t group = links.groups.size();
        if (node.m_bundle != nullptr) {
            group = groupOfBundle.try_emplace(node.m_bundle, group).first->second;
        }
        if (group == links.groups.size()) {
            links.groups.emplace_back();
            for (const GraphNode::Link& link : node.allLinks()) {
                links.groups.back().devices.push_back(link.partner->m_mark);
            }
        }
        links.groups[group].elements.push_back(node.m_position);
        named.elements.push_back(entry.key);
        node.forEachLink([&](const DeviceNode& device) { links.kept.push_back({node.m_position, device.m_mark}); });
    }
    links.elementCount = named.elements.size();
    links.deviceCount = named.devices.size();
    return named;
}

void Associations::assign(const std::vector<AssociationLinks::Pair>& pairs) {
    Storage& storage = *m_storage;
    storage.removeAllLinks();
    for (const auto& [element, position] : pairs) {
        InventoryNode& node = storage.inventoryNodes[element];
        DeviceNode& device = storage.deviceNodes[position];
        GraphNode* const partner = node.m_bundle != nullptr ? static_cast<GraphNode*>(node.m_bundle) : &node;
        const auto link = std::find_if(device.m_links.begin(), device.m_links.end(),
                                       [partner](const GraphNode::Link& one) { return one.partner == partner; });
        VRX_ASSERT_TEXT(link != device.m_links.end(), "link");
        link->isRemoved = false;
        device.m_linkCount = 1;
        if (node.m_bundle != nullptr) {
            node.m_kept = &device;
            device.m_kept = &node;
            ++node.m_bundle->m_taken;
        } else {
            node.m_links[link->counterpart].isRemoved = false;
            node.m_linkCount = 1;
        }
    }
}

void Associations::Storage::removeAllLinks() {
    const auto removeLinks = [](GraphNode& node) {
        for (GraphNode::Link& link : node.m_links) {
            link.isRemoved = true;
        }
        node.m_linkCount = 0;
    };
    std::for_each_n(inventoryNodes.begin(), usedInventoryNodes, [&](InventoryNode& node) {
        removeLinks(node);
        node.m_kept = nullptr;
    });
    std::for_each_n(deviceNodes.begin(), usedDeviceNodes, [&](DeviceNode& node) {
        removeLinks(node);
        node.m_kept = nullptr;
    });
    for (Bundle& bundle : bundles) {
        removeLinks(bundle);
        bundle.m_taken = 0;
    }
    hasRemovedLinks = true;
}

}  // namespace vrx
