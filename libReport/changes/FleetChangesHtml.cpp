/// One page: what changed at the top, a card for each machine that did, with a table of its devices.

#include <fmt/format.h>

#include <algorithm>

#include "libReport/changes/FleetChangesReport.h"
#include "libReport/changes/ValueText.h"
#include "libReport/html/HtmlPage.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

using MachineKind = FleetMachine::Kind;

constexpr std::size_t OPEN_MACHINES = 20;

std::string_view cardClassOf(MachineKind kind) noexcept {
    return kind == MachineKind::Changed ? "card doubt" : kind == MachineKind::Came ? "card waived" : "card";
}

std::string_view badgeClassOf(MachineKind kind) noexcept {
    return kind == MachineKind::Changed ? "badge doubt" : kind == MachineKind::Came ? "badge good" : "badge bad";
}

void writeHeader(HtmlWriter& html, const FleetChangesReport& report) {
    html.begin("header").begin("a", "skip").attribute("href", "#machines").text("Skip to the machines").end();
    html.element("span", report.isEqual() ? "badge verdict good" : "badge verdict bad",
                 report.isEqual() ? "equal" : "different");
    html.element("h1", "",
                 fmt::format("{} of {} changed", report.count(MachineKind::Changed),
                             counted(report.machines.size(), "machine")));
    html.begin("dl").element("dt", "", "Before").element("dd", "", report.before);
    html.element("dt", "", "After").element("dd", "", report.after);
    html.element("dt", "", "Came").element("dd", "", std::to_string(report.count(MachineKind::Came)));
    html.element("dt", "", "Went").element("dd", "", std::to_string(report.count(MachineKind::Went)));
    if (const std::string parts = partCounts(report); !parts.empty()) {
        html.element("dt", "", "Devices").element("dd", "", parts);
    }
    html.end().end().raw("\n");
}

void writeChanges(HtmlWriter& html, const FleetMachine& machine) {
    html.begin("div", "wide").begin("table").begin("tr");
    for (const char* const title : {"What", "Device", "Property", "Before", "After"}) {
        html.begin("th").attribute("scope", "col").text(title).end();
    }
    html.end();
    for (const FleetDeviceChange& change : machine.changes) {
        const std::size_t rows = std::max<std::size_t>(change.values.size(), 1);
        for (std::size_t i = 0; i < rows; ++i) {
            html.begin("tr").element("td", "", i == 0 ? nameOf(change.kind) : "");
            html.element("td", "", i == 0 ? changeTitle(machine, change) : "");
            if (i < change.values.size()) {
                const ValueChange& value = change.values[i];
                html.element("td", "", valueTitle(value)).element("td", "", valueSide(value.before));
                html.element("td", "", valueSide(value.after));
            }
            html.end();
        }
    }
    html.end().end();
}

void writeCard(HtmlWriter& html, const FleetMachine& machine, bool isOpen) {
    html.begin("details", cardClassOf(machine.kind)).attribute(HTML_ENTRY, "");
    if (isOpen) {
        html.attribute("open", "");
    }
    html.begin("summary").element("span", badgeClassOf(machine.kind), nameOf(machine.kind));
    html.text(" " + machineTitle(machine)).end().begin("div");
    if (!machine.problem.empty()) {
        html.element("p", "", machine.problem);
    }
    if (!machine.changes.empty()) {
        writeChanges(html, machine);
    }
    if (const std::string untold = untoldText(machine); !untold.empty()) {
        html.element("p", "", "Not compared: " + untold + ".");
    }
    html.end().end().raw("\n");
}

}  // namespace

std::string fleetChangesHtml(const FleetChangesReport& report, const TextFormat&) {
    HtmlWriter html;
    beginPage(html, fmt::format("Changes from {} to {}", report.before, report.after));
    writeHeader(html, report);
    html.begin("main");
    writeSearch(html);
    html.begin("section").attribute("id", "machines").attribute("aria-labelledby", "machines-title");
    html.begin("h2").attribute("id", "machines-title").text("Machines").end().raw("\n");
    std::size_t shown = 0;
    for (const FleetMachine& machine : report.machines) {
        if (machine.kind != MachineKind::Equal || !untoldText(machine).empty()) {
            writeCard(html, machine, shown++ < OPEN_MACHINES);
        }
    }
    if (shown == 0) {
        html.element("p", "", "None changed.");
    }
    html.end().end();
    endPage(html);
    return html.take();
}

}  // namespace vrx
