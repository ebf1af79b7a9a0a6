#include <fmt/format.h>

#include <map>
#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libReport/faults/FaultBlock.h"
#include "libReport/faults/WaivedText.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/ImportNotices.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libReport/text/UnreadText.h"
#include "libReport/writers/CheckHeadline.h"
#include "libReport/writers/NoticeText.h"
#include "libReport/writers/PlacedLines.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

/// The name of the script or the machine, and how much it holds.
std::string inputText(const std::string& name, std::size_t count, const char* noun) {
    return printable(std::string_view(name)) + " (" + counted(count, noun) + ")";
}

std::string identityText(const MachineIdentity& machine) {
    std::string text = printable(machine.manufacturer);
    const auto append = [&text](const char* label, const String& value, const char* separator) {
        if (!value.isEmpty()) {
            text += (text.empty() ? "" : separator) + std::string(label) + printable(value);
        }
    };
    append("", machine.model, " ");
    append("serial number ", machine.serialNumber, ", ");
    append("host ", machine.hostName, ", ");
    return text;
}

void writeHead(std::string& out, const CheckReport& report, const TextFormat& format) {
    out += verdictLine(report.verdict, report.headline, format);
    TextTable table(2, {Style::Dim, Style::Plain});
    const std::string machine = identityText(report.machine);
    if (!machine.empty()) {
        table.addRow({"machine", machine});
    }
    table.addRow({"recording", inputText(report.state ? inputName(*report.state) : "this machine",
                                         report.machineDevices, "device")});
    table.addRow({"script", inputText(inputName(report.script), report.deviceElements, "device element")});
    table.addRow({"program", std::string(PROGRAM_NAME) + " " + std::string(report.version)});
    if (!format.isStable) {
        table.addRow({"checked", report.started.toIso8601().toUtf8() + " in " + durationText(report.duration)});
    }
    table.write(out, format);
}

void writeFaults(std::string& out, const CheckReport& report, const TextFormat& format) {
    const std::string file = inputName(report.script);
    for (std::size_t i = 0; i < report.faults.size(); ++i) {
        out += "\n" + faultBlock(report.faults[i], file, format);
        if (report.faults[i].isOfOtherMachine && i + 1 < report.faults.size() &&
            !report.faults[i + 1].isOfOtherMachine) {
            out += "\n  What follows may be wrong only because this is another machine.\n";
        }
    }
}

/// Why a script passes that another program, or another recording, may fail.
void writeAssignment(std::string& out, const CheckReport& report, const TextFormat& format) {
    if (!report.isAssignedExactly) {
        return;
    }
    const std::string file = inputName(report.script);
    PlacedLines lines(file, format);
    for (const ElementPlace& place : report.exactlyAssigned) {
        lines.wrapped(0, lines.placeText(place) + "  would get no device by the greedy assignment", Style::Caution);
    }
    if (report.exactlyAssigned.empty()) {
        lines.wrapped(0, "the greedy assignment would leave a device too many", Style::Caution);
    }
    lines.wrapped(0, "Elements that ask for more should stand before those that ask for less.", Style::Plain);
    out += "\n" + styled("Assigned exactly", Style::Bold, format.colour) + "\n" + lines.take();
}

/// What is there as it should be, by type.
void writeCounts(std::string& out, const CheckReport& report, const TextFormat& format) {
    TextTable table(2, {Style::Plain, Style::Plain});
    for (const TypeCount& count : report.counts) {
        table.addRow({fmt::format("{} of {}", count.met, count.asked), printable(count.type)});
    }
    if (!report.counts.empty()) {
        out += "\n";
        table.write(out, format);
    }
}

std::string countsText(const std::vector<Fault>& faults) {
    std::map<FaultKind, std::size_t> counts;
    for (const Fault& fault : faults) {
        ++counts[fault.kind];
    }
    std::string text = counted(faults.size(), "fault");
    const char* separator = ": ";
    for (const auto& [kind, count] : counts) {
        text += separator + fmt::format("{} {}", count, nameOf(kind));
        separator = ", ";
    }
    return text;
}

/// What is not known, where it may matter: of a check that is certain only what the recording is wrong in.
void writeUnknowns(std::string& out, const CheckReport& report, const TextFormat& format) {
    const std::string file = inputName(report.script);
    PlacedLines lines(file, format);
    for (const Doubt& doubt : report.faults.empty() ? report.doubts : std::vector<Doubt>()) {
        lines.wrapped(0, lines.placeText(doubt.place) + "  " + doubtText(doubt), Style::Caution);
    }
    if (report.verdict != Verdict::Passed) {
        for (const UnreadSource& unread : report.unread) {
            lines.wrapped(0, "not read: " + unreadText(unread), Style::Caution);
        }
    }
    for (const std::string& notice : importNotices(report.import)) {
        lines.wrapped(0, "in the recording: " + notice, Style::Caution);
    }
    const std::string text = lines.take();
    if (!text.empty()) {
        out += "\n" + styled("Not known", Style::Bold, format.colour) + "\n" + text;
    }
}

}  // namespace

std::string checkText(const CheckReport& report, const TextFormat& asked) {
    TextFormat format = asked;
    format.width = lineWidth(asked);
    std::string out;
    writeHead(out, report, format);
    writeFaults(out, report, format);
    const std::string notices = noticeText(report.notices, inputName(report.script), format);
    if (!notices.empty()) {
        out += "\n" + styled("Notices", Style::Bold, format.colour) + "\n" + notices;
    }
    writeUnknowns(out, report, format);
    writeAssignment(out, report, format);
    out += waivedText(report, format);
    writeCounts(out, report, format);
    if (report.story) {
        out += "\n" + storyText(*report.story, inputName(report.script), format);
    }
    if (report.verdict == Verdict::Failed || report.verdict == Verdict::Undecided) {
        out += "\n" + countsText(report.faults) + "\n";
    }
    return out;
}

}  // namespace vrx
