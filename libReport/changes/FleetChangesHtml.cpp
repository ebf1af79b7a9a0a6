/// One page: what changed at the top, a card for each machine that did, with its devices.

#include <fmt/format.h>

#include "libReport/changes/FleetChangesReport.h"
#include "libReport/changes/UntoldText.h"
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

std::string_view badgeClassOf(FleetDeviceChange::Kind kind) noexcept {
    return kind == FleetDeviceChange::Kind::Came   ? "badge good"
           : kind == FleetDeviceChange::Kind::Went ? "badge bad"
                                                   : "badge doubt";
}

void writeCount(HtmlWriter& html, std::string_view title, std::size_t count) {
    if (count > 0) {
        html.element("dt", "", title).element("dd", "", std::to_string(count));
    }
}

void writeHeader(HtmlWriter& html, const FleetChangesReport& report) {
    html.begin("header").begin("a", "skip").attribute("href", "#machines").text("Skip to the machines").end();
    const bool isUntold = report.untoldCount() > 0;
    html.element("span",
                 !report.isEqual() ? "badge verdict bad"
                 : isUntold        ? "badge verdict doubt"
                                   : "badge verdict good",
                 !report.isEqual() ? "different"
                 : isUntold        ? "undetermined"
                                   : "equal");
    html.element("h1", "",
                 fmt::format("{} of {} changed", report.count(MachineKind::Changed),
                             counted(report.machines.size(), "machine")));
    html.begin("dl").element("dt", "", "Before").element("dd", "", report.before);
    html.element("dt", "", "After").element("dd", "", report.after);
    writeCount(html, "Came", report.count(MachineKind::Came));
    writeCount(html, "Went", report.count(MachineKind::Went));
    writeCount(html, "Unreadable", report.count(MachineKind::Unreadable));
    writeCount(html, "Not compared in full", report.untoldCount());
    if (const std::string parts = partCounts(report); !parts.empty()) {
        html.element("dt", "", "Devices").element("dd", "", parts);
    }
    html.end().end().raw("\n");
}

void writeChange(HtmlWriter& html, const FleetMachine& machine, const FleetDeviceChange& change) {
    html.begin("p").element("span", badgeClassOf(change.kind), nameOf(change.kind));
    html.text(" " + changeTitle(machine, change)).end();
    if (change.values.empty()) {
        return;
    }
    html.begin("dl");
    for (const ValueChange& value : change.values) {
        html.element("dt", "", valueTitle(value));
        html.element("dd", "", valueSide(value.before) + " \u2192 " + valueSide(value.after));
    }
    html.end();
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
    for (const FleetDeviceChange& change : machine.changes) {
        writeChange(html, machine, change);
    }
    if (!machine.untold.isNone()) {
        html.element("p", "", "Not compared: " + untoldText(machine.untold) + ".");
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
        if (machine.kind != MachineKind::Equal || !machine.untold.isNone()) {
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
