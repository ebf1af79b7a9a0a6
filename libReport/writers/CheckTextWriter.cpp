#include <fmt/format.h>

#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libCommon/text/UuCode.h"
#include "libDiagnosis/MissingDevices.h"
#include "libReport/text/ReadablePattern.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libReport/writers/CheckHeadline.h"
#include "libReport/writers/FindingText.h"
#include "libReport/writers/NoticeText.h"
#include "libReport/writers/Writers.h"
#include "libSystemState/StateManager.h"

namespace vrx {

namespace {

std::string machineText(const CheckReport& report) {
    const std::string name = report.state ? inputName(*report.state) : "this machine";
    return printable(std::string_view(name)) + " (" + counted(report.machine->deviceCount(), "device") + ")";
}

std::string orDash(const std::string& text) { return text.empty() ? "-" : text; }

void writeDevices(std::string& out, const char* title, const Array<Inventory::DeviceSpec>& devices, bool areAskedFor,
                  const TextFormat& format) {
    if (devices.isEmpty()) {
        return;
    }
    out += "\n" + styled(fmt::format("{}: {}", title, devices.size()), Style::Bold, format.colour) + "\n";
    TextTable table(2, {Style::Plain, Style::Plain, Style::Plain, Style::Plain});
    table.setHeader({"type", "name", "hardware locator", "OS locator"});
    for (const Inventory::DeviceSpec& device : devices) {
        // A script's texts are encoded and its name is a pattern; a machine's stand for themselves.
        const auto text = [areAskedFor](const String& raw) {
            return orDash(printable(areAskedFor ? fromXmlSafe(raw) : raw));
        };
        const bool hasPattern = areAskedFor && !device.name.isEmpty();
        table.addRow({text(device.type), hasPattern ? readablePattern(fromXmlSafe(device.name)) : text(device.name),
                      text(device.hwLocator), text(device.osLocator)});
    }
    table.write(out, format);
}

struct Headline {
    const char* verdict;
    Style style;
    std::string sentence;
};

Headline headlineOf(const CheckReport& report, const Array<Inventory::DeviceSpec>& missing) {
    switch (report.verdict) {
        case Verdict::Passed: return {"PASSED", Style::Good, "the machine holds what the script asks for"};
        case Verdict::NothingToCheck:
            return {"NOTHING CHECKED", Style::Caution, "the script asks for no device and has no fail-on-extra rule"};
        case Verdict::Undecided:
            return {"UNDECIDED", Style::Caution,
                    counted(report.givenUpPatterns, "pattern test") + " took too much work and had to be given up"};
        default: return {"FAILED", Style::Bad, problemSentence(report, missing)};
    }
}

void writeHead(std::string& out, const CheckReport& report, const Array<Inventory::DeviceSpec>& missing,
               const TextFormat& format) {
    const Headline headline = headlineOf(report, missing);
    out += styled(headline.verdict, headline.style, format.colour) + "  " + headline.sentence + "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"script", printable(std::string_view(inputName(report.script))) + " (" +
                                counted(report.content.devices, "device element") + ")"});
    table.addRow({"machine", machineText(report)});
    table.write(out, format);
}

}  // namespace

std::string checkText(const CheckReport& report, const TextFormat& format) {
    const std::string script = inputName(report.script);
    std::string out;
    const Array<Inventory::DeviceSpec> missing = missingDevices(report.missing, *report.annotatedScript);
    writeHead(out, report, missing, format);
    const std::string notices = noticeText(report.events, script, format);
    if (!notices.empty()) {
        out += "\n" + styled("Notices", Style::Bold, format.colour) + "\n" + notices;
    }
    const bool showsFindings = report.verdict == Verdict::Failed || report.verdict == Verdict::Undecided;
    if (!showsFindings) {
        out += fmt::format("  checked in {}\n", durationText(report.duration));
        return out;
    }
    writeDevices(out, "Missing devices", missing, true, format);
    writeDevices(out, "Extra devices", report.extra, false, format);
    const FindingText findings = findingText(findingsOf(*report.annotatedScript), script, report.machine, format);
    if (findings.count > 0) {
        out += "\n" + styled(fmt::format("Findings: {}", findings.count), Style::Bold, format.colour) + "\n" +
               findings.text;
    }
    out += fmt::format("\n{} missing, {} extra, {}; checked in {}\n", missing.size(), report.extra.size(),
                       counted(findings.count, "finding"), durationText(report.duration));
    return out;
}

}  // namespace vrx
