/// Parts lists and the parts of a machine, for spreadsheets.

#include "libReport/parts/PartGenerationReport.h"
#include "libReport/parts/PartsReport.h"
#include "libReport/text/CsvTable.h"

namespace vrx {

namespace {

/// A list that was refused has a row for each mistake, with what is wrong in place of the description.
void addMistakes(CsvTable& table, const ScriptMistakes& mistakes) {
    for (const ScriptMistake& mistake : mistakes) {
        table.addRow({"mistake", "", "", mistakeLine(mistake), ""});
    }
}

}  // namespace

std::string partsCsv(const PartsReport& report, const TextFormat&) {
    CsvTable table;
    table.addRow({"kind", "id", "name", "description", "xml"});
    for (const Inventory::PartSpec& part : report.parts) {
        table.addRow({"part", part.id.toUtf8(), part.name.toUtf8(), part.description.toUtf8(), part.xml.toUtf8()});
    }
    for (const String& name : report.blankParts) {
        table.addRow({"blank", "", name.toUtf8(), "", ""});
    }
    addMistakes(table, report.mistakes);
    return table.text();
}

std::string partGenerationCsv(const PartGenerationReport& report, const TextFormat&) {
    CsvTable table;
    table.addRow({"kind", "id", "name", "description", "device"});
    for (const Inventory::PartSpec& part : report.generatedParts) {
        for (const String& device : part.devices) {
            table.addRow({"part", part.id.toUtf8(), part.name.toUtf8(), part.description.toUtf8(), device.toUtf8()});
        }
    }
    for (const Inventory::DeviceSpec& extra : report.extraDevices) {
        table.addRow({"extra", "", extra.name.toUtf8(), extra.type.toUtf8(), extra.guid().toUtf8()});
    }
    addMistakes(table, report.mistakes);
    return table.text();
}

}  // namespace vrx
