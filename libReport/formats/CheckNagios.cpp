/// One line for a monitoring system: the status, the headline, and figures behind the bar; a line for each fault below.
/// A bar in a text would begin the figures.

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/formats/FaultCounts.h"
#include "libReport/formats/NagiosStatus.h"
#include "libReport/waivers/ReportWaivers.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

std::string withoutBars(std::string_view text) {
    std::string out;
    for (const char character : printable(text)) {
        character == '|' ? out += "\\u007C" : out += character;
    }
    return out;
}

std::string headlineOfAny(const CheckReport& report) {
    if (!report.headline.empty()) {
        return report.headline;
    }
    return report.fileErrors.isEmpty() ? std::string(nameOf(report.verdict)) : report.fileErrors[0].toUtf8();
}

std::string figures(const CheckReport& report) {
    std::string text = fmt::format("faults={};;;0", report.faults.size());
    const auto counts = faultCounts(report.faults);
    for (const FaultKind kind : allFaultKinds()) {
        text += fmt::format(" {}={};;;0", nameOf(kind), counts[static_cast<std::size_t>(kind)]);
    }
    return text + fmt::format(" waived={};;;0", report.waived.size()) +
           fmt::format(" devices={};;;0 time={:.3f}s;;;0", report.machineDevices,
                       std::chrono::duration<double>(report.duration).count());
}

}  // namespace

NagiosStatus nagiosStatus(const CheckReport& report) noexcept {
    const auto onlyWarns = [&report](const Fault& fault) {
        return std::ranges::find(report.warningKinds, fault.kind) != report.warningKinds.end();
    };
    switch (report.verdict) {
        case Verdict::Passed: return NagiosStatus::Ok;
        case Verdict::Failed: {
            const bool isWarning = !report.faults.empty() && std::ranges::all_of(report.faults, onlyWarns);
            return isWarning ? NagiosStatus::Warning : NagiosStatus::Critical;
        }
        default: return NagiosStatus::Unknown;
    }
}

std::string nagiosLine(NagiosStatus status, std::string_view text) {
    static constexpr const char* NAMES[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
    return fmt::format("INVENTORY {} - {}", NAMES[static_cast<std::size_t>(status)], withoutBars(text));
}

std::string checkNagios(const CheckReport& report, const TextFormat&) {
    std::string out = nagiosLine(nagiosStatus(report), headlineOfAny(report)) + " | " + figures(report) + "\n";
    for (const Fault& fault : report.faults) {
        out += fmt::format("{}: {}\n", nameOf(fault.kind), withoutBars(faultText(fault)));
    }
    for (const WaivedFault& waived : report.waived) {
        out += fmt::format("waived: {}; {}\n", withoutBars(faultText(waived.fault)),
                           withoutBars(waiverText(waived.waivers.front())));
    }
    for (const Waiver& expired : report.expiredWaivers) {
        out += fmt::format("waiver has expired: {}\n", withoutBars(waiverText(expired)));
    }
    for (const ScriptMistake& mistake : report.mistakes) {
        out += withoutBars(mistakeLine(mistake)) + "\n";
    }
    return out;
}

}  // namespace vrx
