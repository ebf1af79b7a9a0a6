/// The outcome of parts-list generation as a test result and a `part-generation-report` document: on success the parts
/// with their devices and the extra devices, on failure the groups of parts that cannot be told apart.

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/diaglog/DeviceHeader.h"

namespace vrx {

using PartSpec = Inventory::PartSpec;

namespace {

void linkDeviceHeader(XmlElement* parent, const String& guid, const StateManager& state) {
    if (const boost::shared_ptr<IDeviceImp> device = state.deviceByGuid(guid)) {
        parent->LinkEndChild(diaglog::deviceToXmlHeader(parent->Document(), device.get()));
    }
}

void linkPart(XmlElement* parent, const PartSpec& part, const StateManager& state) {
    XmlElement* const element = parent->Document().NewElement(vocabulary::PART);
    element->SetAttribute(vocabulary::ID, part.id);
    element->SetAttribute(vocabulary::NAME, part.name);
    element->SetAttribute(vocabulary::DESCRIPTION, part.description);
    for (const String& guid : part.devices) {
        linkDeviceHeader(element, guid, state);
    }
    parent->LinkEndChild(element);
}

void linkGroups(XmlElement* report, const Array<Array<PartSpec>>& groups, const StateManager& state) {
    for (const Array<PartSpec>& group : groups) {
        // Contract: "ambigous" is how the element is spelt.
        XmlElement* const element = report->Document().NewElement(u"ambigous-parts-group");
        for (const PartSpec& part : group) {
            linkPart(element, part, state);
        }
        report->LinkEndChild(element);
    }
}

void linkExtraDevices(XmlElement* report, const Array<Inventory::DeviceSpec>& extraDevices, const StateManager& state) {
    XmlElement* const element = report->Document().NewElement(u"extra-devices");
    for (const Inventory::DeviceSpec& device : extraDevices) {
        linkDeviceHeader(element, device.guid(), state);
    }
    report->LinkEndChild(element);
}

TestResultImp generateXmlResults(XmlContainer& parent, bool generated, const StateManager& state,
                                 const Array<PartSpec>& generatedParts, const Array<Array<PartSpec>>& ambiguousGroups,
                                 const Array<Inventory::DeviceSpec>& extraDevices) {
    const TestResultImp result(
        generated ? (extraDevices.isEmpty() ? TestResultImp::Passed : TestResultImp::PassedWithExtraDevices)
                  : (ambiguousGroups.isEmpty() ? TestResultImp::Failed : TestResultImp::FailedAmbiguousParts));
    XmlElement* const report = parent.Document().NewElement(u"part-generation-report");
    report->SetAttribute(u"result", result.toString());
    if (!generated) {
        linkGroups(report, ambiguousGroups, state);
    } else {
        for (const PartSpec& part : generatedParts) {
            linkPart(report, part, state);
        }
        if (!extraDevices.isEmpty()) {
            linkExtraDevices(report, extraDevices, state);
        }
    }
    parent.LinkEndChild(report);
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"generateXmlResults() res: " << result.toString());
    return result;
}

}  // namespace

TestResultImp Inventory::generatePartsListDataAndXml(const Array<PartSpec>& partsList, const String& baseScript,
                                                     Array<PartSpec>& generatedParts, DeviceToPartsTable& deviceToParts,
                                                     Array<Array<PartSpec>>& ambiguousGroups,
                                                     Array<DeviceSpec>& extraDevices, XmlDocument& document,
                                                     StateManager* state) {
    StateManager& store = state != nullptr ? *state : StateManager::instance();
    const bool generated =
        generatePartsList(partsList, baseScript, generatedParts, deviceToParts, ambiguousGroups, extraDevices, &store);
    return generateXmlResults(document.Top(), generated, store, generatedParts, ambiguousGroups, extraDevices);
}

XmlDocument Inventory::generatePartsListXml(const Array<PartSpec>& partsList, const String& baseScript,
                                            StateManager* state) {
    XmlDocument document;
    Array<PartSpec> generatedParts;
    DeviceToPartsTable deviceToParts(32);
    Array<Array<PartSpec>> ambiguousGroups;
    Array<DeviceSpec> extraDevices;
    generatePartsListDataAndXml(partsList, baseScript, generatedParts, deviceToParts, ambiguousGroups, extraDevices,
                                document, state);
    return document;
}

}  // namespace vrx
