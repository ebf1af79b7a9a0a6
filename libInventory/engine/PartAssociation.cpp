/// Which devices belong to a `part` element, and taking the devices of a failing part out of the working graph.

#include "libInventory/engine/PartAssociation.h"

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/ErrorFiling.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/UniqueTexts.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using vocabulary::ElementKind;

void PartAssociation::collect(XmlElement* element, bool underNot, UniqueTexts& deviceGuids) {
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runPartAssociation() - " << placeOf(element) << element->Name());
    const ElementKind kind = vocabulary::kindOf(*element);
    switch (kind) {
        case ElementKind::Part: ErrorFiling(m_state).file(element, FindingKind::NestedPart, slot::SCRIPT); break;
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Or:
        case ElementKind::Not:
            for (XmlElement* const child : childElements(element)) {
                collect(child, underNot || kind == ElementKind::Not, deviceGuids);
            }
            break;
        case ElementKind::Device: {
            if (underNot) {
                break;
            }
            Array<boost::shared_ptr<IDeviceImp>> devices;
            m_state.m_associations.getMatchedDevices(element, devices);
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"runPartAssociation() - " << placeOf(element) << u" device_count: " << devices.size());
            for (const auto& device : devices) {
                deviceGuids.append(device->guid());
            }
            break;
        }
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"runPartAssociation() - " << placeOf(element) << element->Name());
}

void PartAssociation::remove(XmlElement* element) {
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"removeDeviceAssociations() - " << placeOf(element) << element->Name());
    switch (vocabulary::kindOf(*element)) {
        case ElementKind::And:
        case ElementKind::InventoryCheck:
        case ElementKind::Or:
        case ElementKind::Not:
            for (XmlElement* const child : childElements(element)) {
                remove(child);
            }
            break;
        case ElementKind::Device: m_state.m_associations.removeDeviceAssociations(element); break;
        default: break;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"removeDeviceAssociations() - " << placeOf(element) << element->Name());
}

}  // namespace vrx
