#include "libFleet/formats/Formats.h"

#include <fmt/format.h>

#include <algorithm>

#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

constexpr FleetFormat FORMATS[] = {{"text", fleetText},   {"json", fleetJson}, {"csv", fleetCsv},
                                   {"junit", fleetJunit}, {"html", fleetHtml}, {"nagios", fleetNagios}};

}  // namespace

std::span<const FleetFormat> fleetFormats() noexcept { return FORMATS; }

const FleetFormat* fleetFormatNamed(std::string_view name) noexcept {
    const auto* const found = std::ranges::find(FORMATS, name, &FleetFormat::name);
    return found == std::end(FORMATS) ? nullptr : found;
}

std::string countsText(const FleetSummary& summary) {
    std::string text;
    for (const FleetVerdict verdict :
         {FleetVerdict::Failed, FleetVerdict::Undetermined, FleetVerdict::Unreadable, FleetVerdict::Passed}) {
        if (const std::size_t count = summary.count(verdict); count > 0) {
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, nameOf(verdict));
        }
    }
    return text.empty() ? "no machine was checked" : text;
}

std::string suspicionText(const FleetSummary& summary) {
    const FleetSummary::FaultCount* const suspect = summary.suspect();
    return suspect == nullptr
               ? std::string()
               : fmt::format(
                     "{} of {} machines have one fault: {}; the script or the recordings are to blame rather "
                     "than so many machines",
                     suspect->machines, summary.machines() - summary.count(FleetVerdict::Unreadable),
                     suspect->key.title());
}

std::vector<std::string> limitLines(const FleetSummary& summary) {
    std::vector<std::string> lines;
    if (summary.wasStopped) {
        lines.push_back("stopped before all machines were checked");
    }
    if (summary.uncountedFaults() > 0) {
        lines.push_back(
            fmt::format("there are more than {} different faults; {} beyond the first of these are not counted",
                        FleetSummary::MOST_FAULTS, counted(summary.uncountedFaults(), "fault")));
    }
    if (summary.ungroupedMachines() > 0) {
        lines.push_back(fmt::format("there are too many groups of machines; {} belong to none that is told apart",
                                    counted(summary.ungroupedMachines(), "machine")));
    }
    return lines;
}

}  // namespace vrx
