/// Loading a recorded machine: parse the document, find its root, read the devices under it (SysInfoReader.h). The
/// operations differ in where the text comes from. There is no roll-back: devices that were added before a failure
/// stay.
///
/// Devices are read while the document is parsed, and added to the store once it is known to be whole.

#include "libInventory/ImportReport.h"
#include "libInventory/Inventory.h"
#include "libInventory/recording/PassedOver.h"
#include "libInventory/recording/SysInfoReader.h"
#include "libInventory/recording/UnreadElements.h"
#include "libInventory/support/InventoryLog.h"

namespace vrx {

namespace {

using Failure = ImportReport::Failure;

void noteParseError(const XmlDocument& document, ImportReport& report) {
    report.reason = document.ErrorDesc();
    report.failure = document.IsFileError() ? Failure::Unreadable : Failure::Malformed;
    if (report.failure == Failure::Malformed) {
        report.row = document.ErrorRow() + 1;
        report.column = document.ErrorColumn() + 1;
    }
}

void importDevices(XmlDocument& document, SysInfoReader& reader, StateManager& store, ImportReport& report) {
    XmlElement* const root = document.RootElement();
    if (root == nullptr) {
        report.failure = Failure::NoRoot;
    } else if (!reader.readDevices(*root)) {
        report.failure = Failure::NoDevices;
        report.row = root->Row() + 1;
        report.column = root->Column() + 1;
    } else {
        readUnread(*root, store);
    }
}

/// What was passed over is looked for in the document as a whole, where elements have their places.
template <typename Load>
void notePassedOver(const Load& load, ImportReport& report) {
    XmlDocument document;
    if (load(document, nullptr)) {
        findPassedOver(*document.RootElement(), report);
    } else {
        report.passedOver.emplace();  // it has changed meanwhile
    }
}

template <typename Load>
bool importInto(StateManager& store, ImportReport& report, const Load& load) {
    XmlDocument document;
    SysInfoReader reader(store, report);
    if (load(document, &reader)) {
        importDevices(document, reader, store, report);
    } else {
        noteParseError(document, report);
    }
    if (report.failure == Failure::None && reader.hasMetOddities()) {
        notePassedOver(load, report);
    }
    for (const String& line : report.failureLines()) {
        VRX_LOG(inventoryLog(), LogPriority::Error, line);
    }
    return report.failure == Failure::None;
}

}  // namespace

bool Inventory::importStateFromXmlString(const String& xml, StateManager& store, ImportReport& report) {
    report = ImportReport();
    return importInto(store, report,
                      [&](XmlDocument& document, XmlElementReader* reader) { return document.Parse(xml, reader); });
}

bool Inventory::importStateFromXmlFile(const String& path, StateManager& store, ImportReport& report,
                                       unsigned threads) {
    report = ImportReport();
    report.isFile = true;
    report.path = path;
    return importInto(store, report, [&](XmlDocument& document, XmlElementReader* reader) {
        return document.LoadFile(path, reader, threads);
    });
}

bool Inventory::importStateFromXmlString(const String& xml, StateManager& store) {
    ImportReport report;
    return importStateFromXmlString(xml, store, report);
}

bool Inventory::importStateFromXmlFile(const String& path, StateManager& store) {
    ImportReport report;
    return importStateFromXmlFile(path, store, report);
}

}  // namespace vrx
