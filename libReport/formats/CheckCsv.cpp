/// One row for each fault, waived ones behind the others, and none for a check that passed without any. Mistakes of a
/// script, reasons why it did not load, and a verdict that no fault tells of are rows as well, so that no table looks
/// like a pass that is none.

#include <fmt/format.h>

#include "libReport/faults/DifferenceText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/faults/FoldedText.h"
#include "libReport/text/CsvTable.h"
#include "libReport/text/TextPieces.h"
#include "libReport/waivers/ReportWaivers.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

std::string differencesText(const Fault& fault) {
    std::string text;
    for (const Difference& difference : fault.differences) {
        text += fmt::format("{}{}: expected {}, found {}", text.empty() ? "" : "; ", subjectText(difference),
                            expectedText(difference), foundText(difference));
    }
    return text;
}

void addFault(CsvTable& table, const CheckReport& report, const Fault& fault, std::string_view waiver = {}) {
    const DeviceIdentity device = fault.device.value_or(DeviceIdentity{});
    const Inventory::DeviceSpec& named = fault.device ? device.spec : fault.asked;
    const PartName part = fault.part.value_or(PartName{});
    table.addRow({inputName(report.script), std::to_string(fault.place.row), std::to_string(fault.place.column),
                  nameOf(fault.kind), named.type.toUtf8(), named.name.toUtf8(), named.hwLocator.toUtf8(),
                  named.osLocator.toUtf8(), device.manufacturer.toUtf8(), device.model.toUtf8(),
                  device.partNumber.toUtf8(), device.serialNumber.toUtf8(), part.id.toUtf8(), part.name.toUtf8(),
                  differencesText(fault), faultText(fault), waiver, foldedTypes(fault)});
}

void addProblem(CsvTable& table, const CheckReport& report, const ElementPlace& place, std::string_view kind,
                std::string_view text) {
    const std::string row = place.row == 0 ? "" : std::to_string(place.row);
    const std::string column = place.row == 0 ? "" : std::to_string(place.column);
    table.addRow(
        {inputName(report.script), row, column, kind, "", "", "", "", "", "", "", "", "", "", "", text, "", ""});
}

}  // namespace

std::string checkCsv(const CheckReport& report, const TextFormat&) {
    CsvTable table;
    table.addRow({"script", "row", "column", "kind", "type", "name", "hwLocator", "osLocator", "manufacturer", "model",
                  "partNumber", "serialNumber", "partId", "partName", "differences", "text", "waiver", "withIt"});
    for (const Fault& fault : report.faults) {
        addFault(table, report, fault);
    }
    for (const WaivedFault& waived : report.waived) {
        addFault(table, report, waived.fault, waiverText(waived.waivers.front()));
    }
    for (const ScriptMistake& mistake : report.mistakes) {
        addProblem(table, report, {std::uint64_t{mistake.finding.row} + 1, std::uint64_t{mistake.finding.column} + 1},
                   "mistake", mistake.finding.message());
    }
    for (const String& error : report.fileErrors) {
        addProblem(table, report, {}, "error", error.toUtf8());
    }
    const bool isTold = !(report.faults.empty() && report.mistakes.empty() && report.fileErrors.isEmpty());
    if (report.verdict != Verdict::Passed && !isTold) {
        addProblem(table, report, {}, nameOf(report.verdict), report.headline);
    }
    return table.text();
}

}  // namespace vrx
