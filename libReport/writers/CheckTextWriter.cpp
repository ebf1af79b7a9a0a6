#include <fmt/format.h>

#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/ImportNotices.h"
#include "libReport/text/ReadablePattern.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libReport/text/UnreadText.h"
#include "libReport/writers/FindingLines.h"
#include "libReport/writers/NoticeText.h"
#include "libReport/writers/PlacedLines.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

using Row = std::vector<std::string>;

void writeDevices(std::string& out, const char* title, const std::vector<Row>& rows, const TextFormat& format) {
    if (rows.empty()) {
        return;
    }
    out += "\n" + styled(fmt::format("{}: {}", title, rows.size()), Style::Bold, format.colour) + "\n";
    TextTable table(2, {Style::Plain, Style::Plain, Style::Plain, Style::Plain});
    table.setHeader({"type", "name", "hardware locator", "OS locator"});
    for (const Row& row : rows) {
        table.addRow(row);
    }
    table.write(out, format);
}

/// What the script asks for; its names are patterns.
std::vector<Row> missingRows(const CheckReport& report) {
    std::vector<Row> rows;
    for (const DeviceProblem& problem : report.devices) {
        if (problem.isMissing && !problem.isUndetermined) {
            const Inventory::DeviceSpec& written = problem.written;
            rows.push_back({orDash(written.type), written.name.isEmpty() ? "-" : readablePattern(written.name),
                            orDash(written.hwLocator), orDash(written.osLocator)});
        }
    }
    return rows;
}

std::vector<Row> extraRows(const CheckReport& report) {
    std::vector<Row> rows;
    for (const Inventory::DeviceSpec& device : report.extra) {
        rows.push_back({orDash(device.type), orDash(device.name), orDash(device.hwLocator), orDash(device.osLocator)});
    }
    return rows;
}

std::string verdictText(Verdict verdict, const TextFormat& format) {
    switch (verdict) {
        case Verdict::Passed: return styled("PASSED", Style::Good, format.colour);
        case Verdict::NothingToCheck: return styled("NOTHING CHECKED", Style::Caution, format.colour);
        case Verdict::Undecided: return styled("UNDETERMINED", Style::Caution, format.colour);
        default: return styled("FAILED", Style::Bad, format.colour);
    }
}

/// The name of the script or the machine, and how much it holds.
std::string inputText(const std::string& name, std::size_t count, const char* noun) {
    return printable(std::string_view(name)) + " (" + counted(count, noun) + ")";
}

void writeHead(std::string& out, const CheckReport& report, const TextFormat& format) {
    out += verdictText(report.verdict, format) + "  " + report.headline + "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"script", inputText(inputName(report.script), report.deviceElements, "device element")});
    table.addRow({"machine", inputText(report.state ? inputName(*report.state) : "this machine", report.machineDevices,
                                       "device")});
    table.write(out, format);
}

void writeFindings(std::string& out, const CheckReport& report, const TextFormat& format) {
    writeDevices(out, "Missing devices", missingRows(report), format);
    writeDevices(out, "Extra devices", extraRows(report), format);
    const FindingLines findings = findingLines(report.findings, report.devices, inputName(report.script), format);
    if (findings.count > 0) {
        out += "\n" + styled(fmt::format("Findings: {}", findings.count), Style::Bold, format.colour) + "\n" +
               findings.text;
    }
    out += fmt::format("\n{} missing, {} extra, {}; checked in {}\n", report.missingCount(), report.extra.size(),
                       counted(findings.count, "finding"), durationText(report.duration));
}

/// What is not known, where it may matter: of a check that is certain only what the recording is wrong in.
void writeUnknowns(std::string& out, const CheckReport& report, const TextFormat& format) {
    const std::string file = inputName(report.script);
    PlacedLines lines(file, format);
    for (const Doubt& doubt : report.doubts) {
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

std::string checkText(const CheckReport& report, const TextFormat& format) {
    std::string out;
    writeHead(out, report, format);
    const std::string notices = noticeText(report.notices, inputName(report.script), format);
    if (!notices.empty()) {
        out += "\n" + styled("Notices", Style::Bold, format.colour) + "\n" + notices;
    }
    writeUnknowns(out, report, format);
    if (report.verdict == Verdict::Failed || report.verdict == Verdict::Undecided) {
        writeFindings(out, report, format);
    } else {
        out += fmt::format("  checked in {}\n", durationText(report.duration));
    }
    return out;
}

}  // namespace vrx
