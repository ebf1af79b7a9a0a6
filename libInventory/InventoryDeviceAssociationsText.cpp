/// The association graph as text, for log lines: each node with its partners, the depth dropping by one a step, so that
/// the graph's own text (depth 3) shows every node and its direct partners.

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
    for (const Link& link : m_links) {
        if (!link.isRemoved) {
            text.append(link.partner->toString(indent, depth - 1));
        }
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

}  // namespace vrx
