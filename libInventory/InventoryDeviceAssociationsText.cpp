/// The association graph as text, for log lines: each node with its partners, the depth dropping by one a step, so that
/// the graph's own text (depth 3) shows every node and its direct partners.

#include <algorithm>
#include <vector>

#include "libCommon/Assertion.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/InventoryDeviceAssociations.h"
#include "libInventory/InventoryDeviceAssociationsNodes.h"
#include "libInventory/script/ScriptElement.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using Associations = Inventory::InventoryDeviceAssociations;

namespace {

String indentation(unsigned indent) { return String(std::size_t{indent} * 4, u' '); }

}  // namespace

String Associations::toString() const {
    String text(u"Inventory Elements to Devices: \n");
    for (const auto& entry : m_inventoryNodes) {
        text.append(entry.value->toString(0, 3)).append(u'\n');
    }
    text.append(u"Devices to Inventory Elements: \n");
    for (const auto& entry : m_deviceNodes) {
        text.append(entry.value->toString(0, 3)).append(u'\n');
    }
    return text;
}

String Associations::GraphNode::toString(unsigned indent, unsigned depth) const {
    String text;
    if (depth == 0) {
        return text;
    }
    for (const GraphNode* const partner : partners()) {
        text.append(partner->toString(indent, depth - 1));
    }
    return text;
}

String Associations::InventoryNode::toString(unsigned indent, unsigned depth) const {
    if (depth == 0) {
        return String();
    }
    String formatted;
    m_element->GetFormattedStr(formatted, static_cast<int>(indent) + 1);
    return concat(indentation(indent), u"InventoryNode xml element ", placeOf(m_element), u" :\n", formatted, u"\n",
                  GraphNode::toString(indent + 1, depth - 1));
}

String Associations::DeviceNode::toString(unsigned indent, unsigned depth) const {
    if (depth == 0) {
        return String();
    }
    return concat(indentation(indent), u"DeviceNode device:", m_device->guid(), u"\n",
                  GraphNode::toString(indent + 1, depth - 1));
}

std::vector<const Associations::GraphNode*> Associations::GraphNode::partners() const {
    std::vector<const GraphNode*> found;
    for (const Link& link : m_links) {
        if (!link.isRemoved) {
            link.partner->appendNodes(found);
        }
    }
    return found;
}

std::vector<const Associations::GraphNode*> Associations::InventoryNode::partners() const {
    std::vector<const GraphNode*> found;
    forEachLink([&found](const DeviceNode& device) { found.push_back(&device); });
    return found;
}

// Among bundles, the order of the elements is that of the links.
std::vector<const Associations::GraphNode*> Associations::DeviceNode::partners() const {
    if (m_kept != nullptr) {
        return {m_kept};
    }
    std::vector<const GraphNode*> found = GraphNode::partners();
    const bool hasBundles = std::ranges::any_of(links(), [](const Link& link) {
        return !link.isRemoved && dynamic_cast<const Bundle*>(link.partner) != nullptr;
    });
    if (hasBundles) {
        std::ranges::sort(found, {}, &GraphNode::position);
    }
    return found;
}

void Associations::Bundle::appendNodes(std::vector<const GraphNode*>& nodes) const {
    nodes.insert(nodes.end(), m_members.begin() + static_cast<std::ptrdiff_t>(m_taken), m_members.end());
}

}  // namespace vrx
