/// Loading a recorded machine: parse the document, find its root, read the devices under it (SysInfoReader.h). The two
/// operations differ in where the text comes from and in how their log lines begin; only a log line says why an import
/// failed. There is no roll-back: devices that were added before a failure stay.
///
/// Devices are read while the document is parsed, unless each of them is logged: the lines stand in the order in which
/// the store gets the devices.

#include "libCommon/text/NumberText.h"
#include "libInventory/Inventory.h"
#include "libInventory/recording/SysInfoReader.h"
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

XmlElementReader* readAhead(SysInfoReader& reader) {
    return inventoryLog().isEnabled(LogPriority::Debug) ? nullptr : &reader;
}

bool importDocument(XmlDocument& document, SysInfoReader& reader, StringView operation, StringView noRoot) {
    XmlElement* const root = document.RootElement();
    if (!root) {
        VRX_LOG(inventoryLog(), LogPriority::Error, operation << noRoot);
        return false;
    }
    if (!reader.readDevices(*root)) {
        VRX_LOG(inventoryLog(), LogPriority::Error, operation << u" populateStateManagerRecursive failed.");
        return false;
    }
    return true;
}

}  // namespace

bool Inventory::importStateFromXmlString(const String& xml, StateManager& store) {
    XmlDocument document;
    SysInfoReader reader(store);
    if (!document.Parse(xml, readAhead(reader))) {
        VRX_LOG(inventoryLog(), LogPriority::Error,
                u"importStateFromXmlString() Parse failed: " << parseError(document));
        return false;
    }
    // Contract: the two operations spell the missing root differently.
    return importDocument(document, reader, u"importStateFromXmlString()", u" root element notforfound in xml.");
}

bool Inventory::importStateFromXmlFile(const String& path, StateManager& store) {
    const String operation = concat(u"importStateFromXmlFile(", path, u")");
    XmlDocument document;
    SysInfoReader reader(store);
    if (!document.LoadFile(path, readAhead(reader))) {
        VRX_LOG(inventoryLog(), LogPriority::Error, operation << u" LoadFile failed: " << parseError(document));
        return false;
    }
    return importDocument(document, reader, operation, u" root element not found in xml.");
}

}  // namespace vrx
