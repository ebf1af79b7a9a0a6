#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libReport/changes/FleetChangesReport.h"
#include "libReport/changes/UntoldText.h"
#include "libReport/changes/ValueText.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"

namespace vrx {

namespace {

using MachineKind = FleetMachine::Kind;
using ChangeKind = FleetDeviceChange::Kind;

constexpr ChangeKind CHANGE_KINDS[] = {ChangeKind::Went,     ChangeKind::Came,    ChangeKind::Moved,
                                       ChangeKind::Replaced, ChangeKind::Updated, ChangeKind::Changed};

std::string fleetHeadline(const FleetChangesReport& report) {
    std::string text =
        fmt::format("{} of {} changed", report.count(MachineKind::Changed), counted(report.machines.size(), "machine"));
    for (const auto& [kind, words] : {std::pair(MachineKind::Came, "came"), std::pair(MachineKind::Went, "went"),
                                      std::pair(MachineKind::Unreadable, "cannot be read")}) {
        if (const std::size_t count = report.count(kind); count > 0) {
            text += fmt::format(", {} {}", count, words);
        }
    }
    return text;
}

void writeMachine(const FleetMachine& machine, const TextFormat& format, std::string& out) {
    out += "\n" + styled(machineTitle(machine), Style::Bold, format.colour);
    if (machine.kind == MachineKind::Equal) {
        out += ": equal, but " + untoldText(machine.untold) + "\n";
        return;
    }
    if (machine.kind != MachineKind::Changed) {
        out += fmt::format(": {}{}\n", nameOf(machine.kind),
                           machine.problem.empty() ? "" : ", " + printable(std::string_view(machine.problem)));
        return;
    }
    out += "\n";
    for (const FleetDeviceChange& change : machine.changes) {
        for (const std::string& piece :
             wrapped(fmt::format("  {}  {}", nameOf(change.kind), changeTitle(machine, change)), format.width)) {
            out += piece + "\n";
        }
        TextTable table(4, {Style::Dim, Style::Plain});
        for (const ValueChange& value : change.values) {
            table.addRow({valueTitle(value), valueSide(value.before) + " -> " + valueSide(value.after)});
        }
        table.write(out, format);
    }
    if (!machine.untold.isNone()) {
        out += "  not compared: " + untoldText(machine.untold) + "\n";
    }
}

}  // namespace

std::size_t FleetChangesReport::count(MachineKind kind) const {
    return static_cast<std::size_t>(std::ranges::count(machines, kind, &FleetMachine::kind));
}

std::size_t FleetChangesReport::count(ChangeKind kind) const {
    std::size_t count = 0;
    for (const FleetMachine& machine : machines) {
        count += static_cast<std::size_t>(std::ranges::count(machine.changes, kind, &FleetDeviceChange::kind));
    }
    return count;
}

std::string_view nameOf(ChangeKind kind) noexcept {
    switch (kind) {
        case ChangeKind::Went: return "went";
        case ChangeKind::Came: return "came";
        case ChangeKind::Moved: return "moved";
        case ChangeKind::Replaced: return "replaced";
        case ChangeKind::Updated: return "updated";
        case ChangeKind::Changed: break;
    }
    return "changed";
}

std::string_view nameOf(MachineKind kind) noexcept {
    switch (kind) {
        case MachineKind::Equal: return "equal";
        case MachineKind::Came: return "came";
        case MachineKind::Went: return "went";
        case MachineKind::Unreadable: return "unreadable";
        case MachineKind::Changed: break;
    }
    return "changed";
}

std::string machineTitle(const FleetMachine& machine) {
    std::string title = printable(std::string_view(machine.after.empty() ? machine.before : machine.after));
    std::string identity = printable(machine.key.model);
    if (!machine.key.serialNumber.isEmpty()) {
        identity += (identity.empty() ? "" : ", ") + printable(machine.key.serialNumber);
    }
    return identity.empty() ? title : title + " (" + identity + ")";
}

std::string changeTitle(const FleetMachine& machine, const FleetDeviceChange& change) {
    std::string title = printable(change.device.type);
    if (!change.device.name.isEmpty()) {
        title += " \"" + printable(change.device.name) + "\"";
    }
    const bool isGone = change.placeAfter.isEmpty();
    const String& place = isGone ? change.placeBefore : change.placeAfter;
    title += place.isEmpty() ? "" : " (" + printable(place) + ")";
    if (!change.otherMachine.empty()) {
        const bool isSame = change.otherMachine == machine.after;
        return title + fmt::format(", {} {}{}", isGone ? "to" : "from",
                                   isSame ? "" : printable(std::string_view(change.otherMachine)) + " ",
                                   printable(change.otherPlace));
    }
    return change.kind == ChangeKind::Moved ? title + ", from " + printable(change.placeBefore) : title;
}

std::size_t FleetChangesReport::untoldCount() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(machines, [](const FleetMachine& machine) { return !machine.untold.isNone(); }));
}

std::string partCounts(const FleetChangesReport& report) {
    std::string text;
    for (const ChangeKind kind : CHANGE_KINDS) {
        if (const std::size_t count = report.count(kind); count > 0) {
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, nameOf(kind));
        }
    }
    return text;
}

std::string fleetChangesText(const FleetChangesReport& report, const TextFormat& format) {
    std::string out =
        comparedWord(report.isEqual(), report.untoldCount() > 0, format) + "  " + fleetHeadline(report) + "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"before", printable(std::string_view(report.before))});
    table.addRow({"after", printable(std::string_view(report.after))});
    if (const std::string parts = partCounts(report); !parts.empty()) {
        table.addRow({"devices", parts});
    }
    table.write(out, format);
    for (const FleetMachine& machine : report.machines) {
        if (machine.kind != MachineKind::Equal || !machine.untold.isNone()) {
            writeMachine(machine, format, out);
        }
    }
    return out;
}

ReportWriters<FleetChangesReport> fleetChangesWriters() {
    static constexpr ReportWriter<FleetChangesReport> WRITERS[] = {
        {"text", fleetChangesText}, {"json", fleetChangesJson}, {"html", fleetChangesHtml}};
    return WRITERS;
}

}  // namespace vrx
