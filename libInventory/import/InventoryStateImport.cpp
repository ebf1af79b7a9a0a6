/// Loading a recorded machine: parse the document, find its root, read the devices under it (SysInfoReader.h). The two
/// operations differ in where the text comes from and in how their log lines begin; only a log line says why an import
/// failed. There is no roll-back: devices that were added before a failure stay.

#include "libCommon/text/NumberText.h"
#include "libInventory/Inventory.h"
#include "libInventory/import/SysInfoReader.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

namespace {

/// What the parser complained of and, 1-based, where. A file that could not be read has no place.
String parseError(const XmlDocument& document) {
    if (document.ErrorRow() == 0 && document.ErrorColumn() == 0) {
        return document.ErrorDesc();
    }
    return concat(document.ErrorDesc(), u" (", toText(std::uint64_t{document.ErrorRow()} + 1), u":",
                  toText(std::uint64_t{document.ErrorColumn()} + 1), u")");
}

bool importDocument(XmlDocument& document, StateManager& store, StringView operation, StringView noRoot) {
    XmlElement* const root = document.RootElement();
    if (!root) {
        VRX_LOG(inventoryLog(), LogPriority::Error, operation << noRoot);
        return false;
    }
    if (!SysInfoReader(store).readDevices(*root)) {
        VRX_LOG(inventoryLog(), LogPriority::Error, operation << u" populateStateManagerRecursive failed.");
        return false;
    }
    return true;
}

}  // namespace

bool Inventory::importStateFromXmlString(const String& xml, StateManager& store) {
    XmlDocument document;
    if (!document.Parse(xml)) {
        VRX_LOG(inventoryLog(), LogPriority::Error,
                u"importStateFromXmlString() Parse failed: " << parseError(document));
        return false;
    }
    // Contract: the two operations spell the missing root differently.
    return importDocument(document, store, u"importStateFromXmlString()", u" root element notforfound in xml.");
}

bool Inventory::importStateFromXmlFile(const String& path, StateManager& store) {
    const String operation = concat(u"importStateFromXmlFile(", path, u")");
    XmlDocument document;
    if (!document.LoadFile(path)) {
        VRX_LOG(inventoryLog(), LogPriority::Error, operation << u" LoadFile failed: " << parseError(document));
        return false;
    }
    return importDocument(document, store, operation, u" root element not found in xml.");
}

}  // namespace vrx
