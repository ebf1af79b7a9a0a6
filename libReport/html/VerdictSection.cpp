#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "libReport/faults/FaultText.h"
#include "libReport/html/CheckSections.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/UnreadText.h"
#include "libReport/waivers/ReportWaivers.h"

namespace vrx {

namespace {

std::string_view classOf(Verdict verdict) noexcept {
    switch (verdict) {
        case Verdict::Passed: return "badge verdict good";
        case Verdict::Failed: return "badge verdict bad";
        default: return "badge verdict doubt";
    }
}

void writeHeadFact(HtmlWriter& html, std::string_view name, const std::string& value) {
    if (!value.empty()) {
        html.element("dt", "", name).element("dd", "", value);
    }
}

void writeList(HtmlWriter& html, std::string_view title, const std::vector<std::string>& lines) {
    if (lines.empty()) {
        return;
    }
    html.begin("section").element("h2", "", title).begin("ul");
    for (const std::string& line : lines) {
        html.element("li", "", line);
    }
    html.end().end().raw("\n");
}

}  // namespace

void writeVerdict(HtmlWriter& html, const CheckReport& report) {
    html.begin("header").begin("a", "skip").attribute("href", "#faults").text("Skip to the faults").end();
    html.element("span", classOf(report.verdict), nameOf(report.verdict)).element("h1", "", report.headline);
    html.begin("dl");
    const MachineIdentity& machine = report.machine;
    writeHeadFact(html, "Manufacturer", machine.manufacturer.toUtf8());
    writeHeadFact(html, "Model", machine.model.toUtf8());
    writeHeadFact(html, "Serial number", machine.serialNumber.toUtf8());
    writeHeadFact(html, "Host", machine.hostName.toUtf8());
    writeHeadFact(html, "Recording", report.state.value_or("this machine"));
    writeHeadFact(html, "Devices", std::to_string(report.machineDevices));
    writeHeadFact(html, "Script",
                  fmt::format("{} ({})", report.script, counted(report.deviceElements, "device element")));
    writeHeadFact(html, "Checked", report.started.toIso8601().toUtf8() + " in " + durationText(report.duration));
    writeHeadFact(html, "Program", "vrx-inventory " + std::string(report.version));
    html.end().end().raw("\n");
}

void writeWaivers(HtmlWriter& html, const CheckReport& report) {
    std::vector<std::string> lines;
    for (const WaivedFault& waived : report.waived) {
        lines.push_back(faultText(waived.fault) + "; " + waiverText(waived.waivers.front()));
    }
    writeList(html, "Waived", lines);
    lines.clear();
    std::ranges::transform(report.expiredWaivers, std::back_inserter(lines), waiverText);
    writeList(html, "Waivers that have expired", lines);
    lines.clear();
    std::ranges::transform(report.idleWaivers, std::back_inserter(lines), waiverText);
    writeList(html, "Waivers that cover nothing", lines);
}

void writeLimits(HtmlWriter& html, const CheckReport& report) {
    std::vector<std::string> lines(report.fileErrors.size());
    std::ranges::transform(report.fileErrors, lines.begin(), [](const String& text) { return text.toUtf8(); });
    writeList(html, "Files", lines);

    lines.clear();
    for (const ScriptMistake& mistake : report.mistakes) {
        lines.push_back(mistakeLine(mistake));
    }
    writeList(html, "Mistakes of the script", lines);

    lines.clear();
    for (const UnreadSource& unread : report.unread) {
        lines.push_back(unreadText(unread));
    }
    writeList(html, "What could not be read", lines);
}

}  // namespace vrx
