/// Which devices belong to a `part` element, and taking the devices of a failing part out of the working graph.

#include "libInventory/Inventory.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/ElementLocation.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/UniqueTexts.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using vocabulary::ElementKind;

bool Inventory::runPartAssociation(XmlElement* element, bool underNot, PartSpec& part, UniqueTexts& deviceGuids) {
    if (element == nullptr) {
        return false;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runPartAssociation() - " << locationOf(element) << element->Name());
    const ElementKind kind = vocabulary::kindOf(*element);
    switch (kind) {
        case ElementKind::Part: failDevice(element, u"Nested <part> nodes are not supported", slot::SCRIPT); break;
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Or:
        case ElementKind::Not:
            for (XmlElement* const child : childElements(element)) {
                runPartAssociation(child, underNot || kind == ElementKind::Not, part, deviceGuids);
            }
            break;
        case ElementKind::Device: {
            if (underNot) {
                break;
            }
            Array<boost::shared_ptr<IDeviceImp>> devices;
            m_state->m_associations.getMatchedDevices(element, devices);
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"runPartAssociation() - " << locationOf(element) << u" device_count: " << devices.size());
            for (const auto& device : devices) {
                deviceGuids.append(device->guid());
            }
            break;
        }
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runPartAssociation() - " << locationOf(element) << element->Name());
    return true;
}

bool Inventory::removeDeviceAssociations(XmlElement* element) {
    if (element == nullptr) {
        return false;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"removeDeviceAssociations() - " << locationOf(element) << element->Name());
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Or:
        case ElementKind::Not:
            for (XmlElement* const child : childElements(element)) {
                removeDeviceAssociations(child);
            }
            break;
        case ElementKind::Device: m_state->m_associations.removeDeviceAssociations(element); break;
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"removeDeviceAssociations() - " << locationOf(element) << element->Name());
    return true;
}

}  // namespace vrx
