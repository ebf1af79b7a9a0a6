#include "libReport/check/CheckTextReport.h"

#include <fmt/format.h>

#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libDiagnosis/MissingDevices.h"
#include "libReport/check/CheckHeadline.h"
#include "libReport/check/FindingText.h"
#include "libReport/check/NoticeText.h"
#include "libReport/text/ReadablePattern.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libSystemState/StateManager.h"

namespace vrx {

namespace {

std::string machineText(const CheckOutcome& outcome) {
    const std::string name = outcome.state ? inputName(*outcome.state) : "this machine";
    return printable(std::string_view(name)) + " (" + counted(outcome.machine->deviceCount(), "device") + ")";
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
            return orDash(printable(areAskedFor ? raw.uuDecode(true, true) : raw));
        };
        const bool hasPattern = areAskedFor && !device.name.isEmpty();
        table.addRow({text(device.type),
                      hasPattern ? readablePattern(device.name.uuDecode(true, true)) : text(device.name),
                      text(device.hwLocator), text(device.osLocator)});
    }
    table.write(out, format);
}

struct Headline {
    const char* verdict;
    Style style;
    std::string sentence;
};

Headline headlineOf(const CheckOutcome& outcome, const Array<Inventory::DeviceSpec>& missing) {
    switch (outcome.verdict) {
        case Verdict::Passed: return {"PASSED", Style::Good, "the machine holds what the script asks for"};
        case Verdict::NothingToCheck:
            return {"NOTHING CHECKED", Style::Caution, "the script asks for no device and has no fail-on-extra rule"};
        case Verdict::Undecided:
            return {"UNDECIDED", Style::Caution,
                    counted(outcome.givenUpPatterns, "pattern test") + " took too much work and had to be given up"};
        default: return {"FAILED", Style::Bad, problemSentence(outcome, missing)};
    }
}

void writeHead(std::string& out, const CheckOutcome& outcome, const Array<Inventory::DeviceSpec>& missing,
               const TextFormat& format) {
    const Headline headline = headlineOf(outcome, missing);
    out += styled(headline.verdict, headline.style, format.colour) + "  " + headline.sentence + "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"script", printable(std::string_view(inputName(outcome.script))) + " (" +
                                counted(outcome.content.devices, "device element") + ")"});
    table.addRow({"machine", machineText(outcome)});
    table.write(out, format);
}

}  // namespace

std::string checkTextReport(const CheckOutcome& outcome, const TextFormat& format) {
    const std::string script = inputName(outcome.script);
    std::string out;
    const Array<Inventory::DeviceSpec> missing = missingDevices(outcome.missing, *outcome.annotatedScript);
    writeHead(out, outcome, missing, format);
    const std::string notices = noticeText(outcome.events, script, format);
    if (!notices.empty()) {
        out += "\n" + styled("Notices", Style::Bold, format.colour) + "\n" + notices;
    }
    const bool showsFindings = outcome.verdict == Verdict::Failed || outcome.verdict == Verdict::Undecided;
    if (!showsFindings) {
        out += fmt::format("  checked in {}\n", durationText(outcome.duration));
        return out;
    }
    writeDevices(out, "Missing devices", missing, true, format);
    writeDevices(out, "Extra devices", outcome.extra, false, format);
    const FindingText findings = findingText(findingsOf(*outcome.annotatedScript), script, outcome.machine, format);
    if (findings.count > 0) {
        out += "\n" + styled(fmt::format("Findings: {}", findings.count), Style::Bold, format.colour) + "\n" +
               findings.text;
    }
    out += fmt::format("\n{} missing, {} extra, {}; checked in {}\n", missing.size(), outcome.extra.size(),
                       counted(findings.count, "finding"), durationText(outcome.duration));
    return out;
}

}  // namespace vrx
