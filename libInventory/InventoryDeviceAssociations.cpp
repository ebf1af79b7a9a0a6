/// The association graph: making it, asking it, merging it.
///
/// Tables map an element or a device, by identity, to its node, in the order of first association; that order decides
/// the order of every walk, so results never depend on addresses. How the graph is reduced to one link per node is in
/// InventoryDeviceAssociationsReduction.cpp.

#include "libInventory/InventoryDeviceAssociations.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "libCommon/Assertion.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/InventoryDeviceAssociationsNodes.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using Associations = Inventory::InventoryDeviceAssociations;

Associations::InventoryDeviceAssociations() : m_storage(std::make_unique<Storage>()) {}

Associations::InventoryDeviceAssociations(const InventoryDeviceAssociations& other) : InventoryDeviceAssociations() {
    append(other);
}

Associations::InventoryDeviceAssociations(InventoryDeviceAssociations&& other) noexcept
    : InventoryDeviceAssociations() {
    swap(other);
}

// Contract: assignment merges; the existing content is kept.
Associations& Associations::operator=(const InventoryDeviceAssociations& other) {
    if (&other != this) {
        append(other);
    }
    return *this;
}

Associations::~InventoryDeviceAssociations() = default;

namespace {

// Contract: "Deivice" is how the line is spelt.
String linkText(const XmlElement* element, const IDeviceImp& device) {
    return concat(u"associate() associating InventoryElement", placeOf(element), u" to Deivice: ", device.guid());
}

}  // namespace

void Associations::reserve(std::size_t elements) {
    m_inventoryNodes.reserve(elements);
    m_deviceNodes.reserve(elements);
}

void Associations::associate(const XmlElement* element, const boost::shared_ptr<IDeviceImp>& device) {
    VRX_ASSERT_TEXT(element, "invElement");
    link(nodeOf(element), device);
}

void Associations::link(InventoryNode& inventoryNode, const boost::shared_ptr<IDeviceImp>& device) {
    if (!device) {
        return;
    }
    logLink(inventoryNode.m_element, *device);
    connect(inventoryNode, device);
}

void Associations::logLink(const XmlElement* element, const IDeviceImp& device) {
    VRX_LOG(inventoryLog(), LogPriority::Debug, linkText(element, device));
}

void Associations::connect(InventoryNode& inventoryNode, const boost::shared_ptr<IDeviceImp>& device) {
    keepInOrder(inventoryNode);
    inventoryNode.m_hasEverMatched = true;
    m_storage->link(inventoryNode, nodeOf(device));
}

void Associations::Storage::link(GraphNode& inventoryNode, GraphNode& deviceNode) {
    const auto inventoryIndex = static_cast<std::uint32_t>(inventoryNode.m_links.size());
    const auto deviceIndex = static_cast<std::uint32_t>(deviceNode.m_links.size());
    deviceNode.m_links.push_back({&inventoryNode, inventoryIndex});
    ++deviceNode.m_linkCount;
    inventoryNode.m_links.push_back({&deviceNode, deviceIndex});
    ++inventoryNode.m_linkCount;
    hasBranches = hasBranches || inventoryIndex > 0 || deviceIndex > 0;
}

const Associations::InventoryNode* Associations::findNode(const XmlElement* element) const {
    Storage& storage = *m_storage;
    const InventoryNode* node = nullptr;
    if (storage.expected < storage.usedInventoryNodes &&
        storage.inventoryNodes[storage.expected].element() == element) {
        node = &storage.inventoryNodes[storage.expected];
    } else if (InventoryNode* const* const found = m_inventoryNodes.find(element)) {
        node = *found;
    }
    if (node != nullptr) {
        storage.expected = std::size_t{node->m_position} + 1;
    }
    return node;
}

Associations::InventoryNode& Associations::nodeOf(const XmlElement* element) {
    Storage& storage = *m_storage;
    if (storage.usedInventoryNodes > 0) {
        InventoryNode& last = storage.inventoryNodes[storage.usedInventoryNodes - 1];
        if (last.element() == element) {
            return last;
        }
    }
    InventoryNode*& node = m_inventoryNodes[element];
    if (node == nullptr) {
        if (storage.usedInventoryNodes == storage.inventoryNodes.size()) {
            storage.inventoryNodes.emplace_back();
        }
        const auto position = static_cast<std::uint32_t>(storage.usedInventoryNodes++);
        node = &storage.inventoryNodes[position];
        node->reset(element, position);
    }
    return *node;
}

Associations::DeviceNode& Associations::nodeOf(const boost::shared_ptr<IDeviceImp>& device) {
    DeviceNode*& node = m_deviceNodes[device.get()];
    if (node == nullptr) {
        Storage& storage = *m_storage;
        if (storage.usedDeviceNodes == storage.deviceNodes.size()) {
            storage.deviceNodes.emplace_back();
        }
        node = &storage.deviceNodes[storage.usedDeviceNodes++];
        node->reset(device);
    }
    return *node;
}

bool Associations::isExtra(const boost::shared_ptr<IDeviceImp>& device, bool& found) const {
    DeviceNode* const* const entry = m_deviceNodes.find(device.get());
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"isExtra() looking up " << device->type().toString(0, false) << u" found: " << (entry != nullptr));
    if (entry == nullptr) {
        return false;
    }
    VRX_ASSERT_TEXT(*entry, "devToXml");
    found = true;
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"isExtra() found " << device->type().toString(0, false) << u" links: " << (*entry)->partners().size());
    return (*entry)->linkCount() == 0;
}

bool Associations::hasEverMatched(const XmlElement* element) const {
    const InventoryNode* const node = findNode(element);
    VRX_ASSERT_TEXT(node, "found");
    return node->hasEverMatched();
}

bool Associations::isSatisfied(const XmlElement* element) const {
    const InventoryNode* const node = findNode(element);
    VRX_ASSERT_TEXT(node, "found");
    return node->linkCount() > 0;
}

void Associations::getUnsatisfiedInventories(Array<const InventoryNode*>& out) const {
    for (const auto& entry : m_inventoryNodes) {
        if (entry.value->linkCount() == 0) {
            out.append(entry.value);
        }
    }
}

void Associations::getMatchedDevices(const XmlElement* element, Array<boost::shared_ptr<IDeviceImp>>& out) const {
    if (const InventoryNode* const node = findNode(element)) {
        node->forEachLink([&out](const DeviceNode& device) { out.append(device.device()); });
    }
}

void Associations::getAssociatedDevices(const XmlElement* element, Array<boost::shared_ptr<IDeviceImp>>& out) const {
    if (const InventoryNode* const node = findNode(element)) {
        for (const GraphNode::Link& link : node->allLinks()) {
            out.append(static_cast<const DeviceNode*>(link.partner)->device());
        }
    }
}

const void* Associations::linksOf(const XmlElement* element) const {
    const InventoryNode* const node = findNode(element);
    return node != nullptr ? &node->allLinks() : nullptr;
}

void Associations::getLists(std::vector<ListedElement>& elements, std::vector<DeviceList>& lists) const {
    boost::unordered_flat_map<const Bundle*, std::size_t> listOf;
    for (const auto& entry : m_inventoryNodes) {
        const Bundle* const bundle = entry.value->m_bundle;
        const auto known = bundle != nullptr ? listOf.find(bundle) : listOf.end();
        if (known != listOf.end()) {
            elements.push_back({entry.key, known->second});
            continue;
        }
        elements.push_back({entry.key, lists.size()});
        if (bundle != nullptr) {
            listOf.emplace(bundle, lists.size());
        }
        DeviceList& list = lists.emplace_back();
        list.shared = bundle != nullptr ? bundle->m_devices.get() : nullptr;
        for (const GraphNode::Link& link : entry.value->allLinks()) {
            list.devices.push_back(static_cast<const DeviceNode*>(link.partner)->device().get());
        }
    }
}

bool Associations::keepsShares() const noexcept { return m_storage->allowsBundles; }

void Associations::getLinks(std::vector<std::pair<const XmlElement*, const IDeviceImp*>>& out) const {
    for (const auto& entry : m_inventoryNodes) {
        entry.value->forEachLink([&](const DeviceNode& device) { out.emplace_back(entry.key, device.device().get()); });
    }
}

void Associations::logLinks() const {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    for (const auto& entry : m_inventoryNodes) {
        logLinks(*entry.value);
    }
}

void Associations::logLinks(const InventoryNode& node) {
    if (inventoryLog().isEnabled(LogPriority::Debug)) {
        node.forEachLink([&node](const DeviceNode& device) { logLink(node.m_element, *device.device()); });
    }
}

// Contract: only the device table forgets the devices. The element keeps its links, and the nodes stay with the
// storage for as long as those links may be followed.
void Associations::removeDeviceAssociations(const XmlElement* element) {
    const InventoryNode* const node = findNode(element);
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"InventoryDeviceAssociations::removeDeviceAssociations() found = " << (node != nullptr));
    if (node == nullptr) {
        return;
    }
    node->forEachLink([this](const DeviceNode& linked) {
        const IDeviceImp& device = *linked.device();
        const bool removed = m_deviceNodes.remove(&device);
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"InventoryDeviceAssociations::removeDeviceAssociations() devie: " << device.name() << u" removed: "
                                                                                   << removed);
    });
}

void Associations::clear() {
    m_inventoryNodes.clear();
    m_deviceNodes.clear();
    for (std::size_t i = 0; i < m_storage->usedDeviceNodes; ++i) {
        m_storage->deviceNodes[i].reset(boost::shared_ptr<IDeviceImp>());
    }
    m_storage->bundles.clear();
    m_storage->openBundles.clear();
    m_storage->allowsBundles = true;
    m_storage->usedInventoryNodes = 0;
    m_storage->usedDeviceNodes = 0;
    m_storage->hasBranches = false;
    m_storage->hasRemovedLinks = false;
    m_storage->mark.reset();
}

void Associations::mark() {
    Storage& storage = *m_storage;
    if (storage.hasRemovedLinks) {
        dissolveBundles();
        storage.compact();
    }
    Storage::Mark mark;
    mark.inventoryNodes = storage.usedInventoryNodes;
    mark.deviceNodes = storage.usedDeviceNodes;
    mark.bundles = storage.bundles.size();
    mark.hasBranches = storage.hasBranches;
    mark.linkCounts.reserve(mark.inventoryNodes + mark.deviceNodes);
    std::for_each_n(storage.inventoryNodes.begin(), mark.inventoryNodes, [&](const InventoryNode& node) {
        mark.linkCounts.push_back(node.GraphNode::linkCount());
        mark.everMatched.push_back(node.hasEverMatched());
    });
    std::for_each_n(storage.deviceNodes.begin(), mark.deviceNodes,
                    [&](const DeviceNode& node) { mark.linkCounts.push_back(node.linkCount()); });
    for (const Bundle& bundle : storage.bundles) {
        mark.linkCounts.push_back(bundle.linkCount());
    }
    storage.openBundles.clear();
    storage.mark = std::move(mark);
}

bool Associations::rewind() {
    Storage& storage = *m_storage;
    if (!storage.mark) {
        return false;
    }
    const Storage::Mark& mark = *storage.mark;
    while (storage.usedInventoryNodes > mark.inventoryNodes) {
        m_inventoryNodes.remove(storage.inventoryNodes[--storage.usedInventoryNodes].element());
    }
    while (storage.usedDeviceNodes > mark.deviceNodes) {
        DeviceNode& node = storage.deviceNodes[--storage.usedDeviceNodes];
        m_deviceNodes.remove(node.device().get());
        node.reset(boost::shared_ptr<IDeviceImp>());
    }
    while (storage.bundles.size() > mark.bundles) {
        storage.bundles.pop_back();
    }
    storage.openBundles.clear();
    storage.hasBranches = mark.hasBranches;
    storage.hasRemovedLinks = false;
    const GraphNode::Link* links = mark.links.data();
    auto count = mark.linkCounts.begin();
    const auto putBack = [&](GraphNode& node) {
        if (mark.hasLinks) {
            node.setLinks(links, links + *count);
            links += *count;
        } else {
            node.restoreLinks(*count);
        }
        ++count;
    };
    auto everMatched = mark.everMatched.begin();
    std::for_each_n(storage.inventoryNodes.begin(), mark.inventoryNodes, [&](InventoryNode& node) {
        putBack(node);
        node.m_kept = nullptr;
        node.m_hasEverMatched = *everMatched++;
    });
    std::for_each_n(storage.deviceNodes.begin(), mark.deviceNodes, [&](DeviceNode& node) {
        putBack(node);
        node.m_kept = nullptr;
    });
    for (Bundle& bundle : storage.bundles) {
        putBack(bundle);
        bundle.m_taken = 0;
    }
    rememberDevices();
    return true;
}

/// Enters devices that the graph was made to forget into their table again, in the order of first association.
void Associations::rememberDevices() {
    Storage& storage = *m_storage;
    if (m_deviceNodes.size() == storage.usedDeviceNodes) {
        return;
    }
    m_deviceNodes.clear();
    std::for_each_n(storage.deviceNodes.begin(), storage.usedDeviceNodes,
                    [this](DeviceNode& node) { m_deviceNodes[node.device().get()] = &node; });
}

void Associations::swap(InventoryDeviceAssociations& other) noexcept {
    std::swap(m_inventoryNodes, other.m_inventoryNodes);
    std::swap(m_deviceNodes, other.m_deviceNodes);
    std::swap(m_storage, other.m_storage);
}

void Associations::append(const InventoryDeviceAssociations& other) {
    if (m_inventoryNodes.isEmpty()) {
        m_inventoryNodes.reserve(other.m_inventoryNodes.size());
        m_deviceNodes.reserve(other.m_deviceNodes.size());
    }
    for (const auto& entry : other.m_inventoryNodes) {
        const Bundle* const bundle = entry.value->m_bundle;
        if (bundle != nullptr && bundle->isWhole()) {
            logLinks(*entry.value);
            associateAgain(entry.key, bundle->m_devices);
        } else {
            InventoryNode& node = nodeOf(entry.key);
            entry.value->forEachLink([&](const DeviceNode& device) { link(node, device.device()); });
        }
    }
}

}  // namespace vrx
