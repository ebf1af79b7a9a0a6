/// The summary: counts, the guard, the most frequent faults, machines with the same faults, what could not be read.

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libFleet/formats/Formats.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_SHOWN = 20;
constexpr std::size_t MOST_FAULTS_OF_GROUP = 4;

class FleetTextWriter final : public FleetWriter {
public:
    explicit FleetTextWriter(const TextFormat& format) : m_format(format) {}

    void begin(std::string&) override {}
    void add(const FleetResult&, std::optional<std::uint32_t>, std::string&) override {}

    void end(const FleetSummary& summary, std::string& out) override {
        out += styled(countsText(summary), styleOf(summary), m_format.colour) + rateOf(summary) + "\n";
        for (const std::string& limit : limitLines(summary)) {
            out += styled(limit, Style::Caution, m_format.colour) + "\n";
        }
        if (const std::string suspicion = suspicionText(summary); !suspicion.empty()) {
            addWrapped(out, "", suspicion, Style::Caution);
        }
        writeFaults(summary, out);
        writeGroups(summary, out);
        writeUnreadable(summary, out);
    }

private:
    static Style styleOf(const FleetSummary& summary) {
        if (summary.count(FleetVerdict::Failed) > 0) {
            return Style::Bad;
        }
        return summary.machines() == summary.count(FleetVerdict::Passed) && summary.machines() > 0 ? Style::Good
                                                                                                   : Style::Caution;
    }

    std::string rateOf(const FleetSummary& summary) const {
        const double seconds = summary.duration ? std::chrono::duration<double>(*summary.duration).count() : 0;
        if (m_format.isStable || seconds <= 0) {
            return {};
        }
        return fmt::format(" ({}, {:.0f} a second)", durationText(*summary.duration),
                           static_cast<double>(summary.machines()) / seconds);
    }

    void addWrapped(std::string& out, const std::string& indent, const std::string& text, Style style) const {
        const unsigned width = m_format.isTerminal ? m_format.width : TextFormat::UNBROKEN;
        for (const std::string& line : wrapped(indent + text, width)) {
            out += styled(line, style, m_format.colour) + "\n";
        }
    }

    void addTitle(std::string& out, const std::string& title) const {
        out += "\n" + styled(title, Style::Bold, m_format.colour) + "\n";
    }

    static std::string examplesOf(const std::vector<std::string>& examples, std::size_t all) {
        std::string text;
        for (const std::string& example : examples) {
            text += (text.empty() ? "" : ", ") + printable(std::string_view(example));
        }
        return all > examples.size() ? text + fmt::format(" and {} more", all - examples.size()) : text;
    }

    void writeFaults(const FleetSummary& summary, std::string& out) const {
        const auto faults = summary.frequentFaults(MOST_SHOWN);
        if (faults.empty()) {
            return;
        }
        addTitle(out, "Most frequent faults" + ofAll(faults.size(), summary.faults().size()));
        for (const FleetSummary::FaultCount* const fault : faults) {
            addWrapped(out, fmt::format("{:>7}  ", fault->machines), fault->key.title(), Style::Plain);
            addWrapped(out, "         ",
                       "as in " + printable(std::string_view(fault->examples.front())) + ": " +
                           printable(std::string_view(fault->text)),
                       Style::Dim);
        }
    }

    void writeGroups(const FleetSummary& summary, std::string& out) const {
        const auto groups = summary.largestGroups(MOST_SHOWN);
        if (groups.empty()) {
            return;
        }
        addTitle(out, "Machines with the same faults" + ofAll(groups.size(), summary.groups().size()));
        for (const FleetSummary::Group* const group : groups) {
            addWrapped(out, fmt::format("{:>7}  ", group->machines), faultsOf(summary, *group), Style::Plain);
            addWrapped(out, "         ", examplesOf(group->examples, group->machines), Style::Dim);
        }
    }

    static std::string faultsOf(const FleetSummary& summary, const FleetSummary::Group& group) {
        std::string text;
        const std::size_t shown = std::min(group.faults.size(), MOST_FAULTS_OF_GROUP);
        for (std::size_t i = 0; i < shown; ++i) {
            text += (text.empty() ? "" : "; ") + summary.faults()[group.faults[i]].key.title();
        }
        return group.faults.size() > shown ? text + fmt::format("; and {} more", group.faults.size() - shown) : text;
    }

    void writeUnreadable(const FleetSummary& summary, std::string& out) const {
        const std::size_t all = summary.count(FleetVerdict::Unreadable);
        if (all == 0) {
            return;
        }
        addTitle(out, "Unreadable" + ofAll(summary.unreadable().size(), all));
        for (const FleetSummary::Unreadable& one : summary.unreadable()) {
            addWrapped(out, "  ",
                       printable(std::string_view(one.file)) + ": " + printable(std::string_view(one.reason)),
                       Style::Plain);
        }
    }

    static std::string ofAll(std::size_t shown, std::size_t all) {
        return shown < all ? fmt::format(" (the first {} of {})", shown, all) : std::string();
    }

    TextFormat m_format;
};

}  // namespace

std::unique_ptr<FleetWriter> fleetText(const TextFormat& format) { return std::make_unique<FleetTextWriter>(format); }

}  // namespace vrx
