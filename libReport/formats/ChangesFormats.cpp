/// What differs between two machines, for CI servers and spreadsheets.

#include <fmt/format.h>

#include "libReport/changes/ChangesReport.h"
#include "libReport/changes/UntoldText.h"
#include "libReport/formats/JunitSuite.h"
#include "libReport/text/CsvTable.h"
#include "libReport/text/DeviceSummary.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

std::string hwLocatorOf(const IDeviceImp* device) { return device == nullptr ? "" : device->hwLocator().toUtf8(); }

std::string textOrNone(const std::optional<String>& text) { return text ? text->toUtf8() : std::string(); }

std::string subjectOf(const ValueChange& value) {
    return value.what == ValueChange::What::Property ? value.key.toUtf8() : std::string(nameOf(value.what));
}

JunitSuite::Case caseOf(const DeviceChange& change) {
    const std::string title = deviceTitle(change.after == nullptr ? *change.before : *change.after);
    JunitSuite::Case one{title, JunitSuite::Outcome::Failure, std::string(kindOf(change)), {}};
    if (change.isOnlyRenamed()) {
        one.outcome = JunitSuite::Outcome::Skipped;
    }
    one.lines.push_back(title + " is " + one.kind);
    for (const ValueChange& value : change.values) {
        one.lines.push_back(
            fmt::format("{}: was {}, is {}", subjectOf(value), textOrNone(value.before), textOrNone(value.after)));
    }
    return one;
}

}  // namespace

std::string changesJunit(const ChangesReport& report, const TextFormat&) {
    JunitSuite suite;
    suite.name = report.after;
    suite.started = report.started;
    suite.properties = {{"before", report.before}, {"after", report.after}};
    for (const DeviceChange& change : report.changes) {
        suite.cases.push_back(caseOf(change));
        suite.cases.back().name += fmt::format(" #{}", suite.cases.size());
    }
    if (!report.untold.isNone()) {
        suite.cases.push_back({"not compared", JunitSuite::Outcome::Skipped, "untold", {untoldText(report.untold)}});
    }
    if (suite.cases.empty()) {
        suite.cases.push_back({"equal", JunitSuite::Outcome::Passed, {}, {}});
    }
    return junitText(suite);
}

std::string changesCsv(const ChangesReport& report, const TextFormat&) {
    CsvTable table;
    table.addRow({"kind", "type", "name", "hwLocatorBefore", "hwLocatorAfter", "what", "before", "after"});
    for (const DeviceChange& change : report.changes) {
        const IDeviceImp& device = change.after == nullptr ? *change.before : *change.after;
        const auto addRow = [&](std::string_view what, std::string_view before, std::string_view after) {
            table.addRow({kindOf(change), device.type().toString().toUtf8(), device.name().toUtf8(),
                          hwLocatorOf(change.before), hwLocatorOf(change.after), what, before, after});
        };
        if (change.values.empty()) {
            addRow("", "", "");
        }
        for (const ValueChange& value : change.values) {
            addRow(subjectOf(value), textOrNone(value.before), textOrNone(value.after));
        }
    }
    return table.text();
}

}  // namespace vrx
