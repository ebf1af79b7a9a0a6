/// One line for a monitoring system: the status, how many machines are wrong, and figures behind the bar. A bar in a
/// text would begin the figures.

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libFleet/formats/Formats.h"

namespace vrx {

namespace {

const char* statusName(const FleetSummary& summary) {
    if (summary.count(FleetVerdict::Failed) > 0) {
        return "CRITICAL";
    }
    return summary.machines() == summary.count(FleetVerdict::Passed) && summary.machines() > 0 && !summary.wasStopped
               ? "OK"
               : "UNKNOWN";
}

std::string figures(const FleetSummary& summary) {
    std::string text = fmt::format("machines={};;;0", summary.machines());
    for (const FleetVerdict verdict :
         {FleetVerdict::Passed, FleetVerdict::Failed, FleetVerdict::Undetermined, FleetVerdict::Unreadable}) {
        text += fmt::format(" {}={};;;0", nameOf(verdict), summary.count(verdict));
    }
    return text;
}

std::string withoutBars(std::string text) {
    std::ranges::replace(text, '|', '/');
    return text;
}

class NagiosLine final : public FleetWriter {
public:
    void begin(std::string&) override {}
    void add(const FleetResult&, std::optional<std::uint32_t>, std::string&) override {}
    void end(const FleetSummary& summary, std::string& out) override {
        std::string text = countsText(summary);
        if (const auto frequent = summary.frequentFaults(1); !frequent.empty()) {
            text += fmt::format("; most often ({}): {}", frequent.front()->machines, frequent.front()->key.title());
        }
        for (const std::string& limit : limitLines(summary)) {
            text += "; " + limit;
        }
        out += fmt::format("FLEET {} - {} | {}\n", statusName(summary), withoutBars(text), figures(summary));
    }
};

}  // namespace

std::unique_ptr<FleetWriter> fleetNagios(const TextFormat&) { return std::make_unique<NagiosLine>(); }

}  // namespace vrx
