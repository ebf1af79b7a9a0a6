#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"
#include "libReport/changes/ChangesReport.h"
#include "libReport/changes/UntoldText.h"
#include "libReport/changes/ValueText.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

constexpr const char* ARROW = " -> ";

class ChangesWriter {
public:
    explicit ChangesWriter(const TextFormat& format) : m_format(format) {}

    /// The devices of one kind below a heading, which is left out without any.
    template <typename IsOfKind>
    std::size_t write(const char* title, const std::vector<DeviceChange>& changes, IsOfKind isOfKind) {
        std::string devices;
        std::size_t count = 0;
        m_text.swap(devices);
        for (const DeviceChange& change : changes) {
            if (isOfKind(change)) {
                ++count;
                writeDevice(change);
            }
        }
        m_text.swap(devices);
        if (count > 0) {
            m_text += "\n" + styled(fmt::format("{}: {}", title, count), Style::Bold, m_format.colour) + "\n" + devices;
        }
        return count;
    }

    std::string take() { return std::move(m_text); }

private:
    void writeDevice(const DeviceChange& change) {
        const IDeviceImp& device = change.before ? *change.before : *change.after;
        std::string line = deviceTitle(device);
        if (change.isMoved()) {
            line += ARROW + printableValue(change.after->hwLocator());
        } else if (change.before == nullptr || change.after == nullptr) {
            const std::string summary = deviceSummary(device);
            line += (summary.empty() ? "" : "  ") + summary;
        }
        for (const std::string& piece : wrapped("  " + line, m_format.width)) {
            m_text += piece + "\n";
        }
        TextTable table(4, {Style::Dim, Style::Plain});
        for (const ValueChange& value : change.values) {
            table.addRow({valueTitle(value), valueSide(value.before) + ARROW + valueSide(value.after)});
        }
        table.write(m_text, m_format);
    }

    const TextFormat& m_format;
    std::string m_text;
};

}  // namespace

std::string changesText(const ChangesReport& report, const TextFormat& format) {
    ChangesWriter writer(format);
    const auto& changes = report.changes;
    const std::size_t missing =
        writer.write("Missing devices", changes, [](const DeviceChange& change) { return change.after == nullptr; });
    const std::size_t added =
        writer.write("Added devices", changes, [](const DeviceChange& change) { return change.before == nullptr; });
    const std::size_t moved =
        writer.write("Moved devices", changes, [](const DeviceChange& change) { return change.isMoved(); });
    const std::size_t changed = writer.write("Changed devices", changes, [](const DeviceChange& change) {
        return change.before != nullptr && change.after != nullptr && !change.isMoved() && !change.isOnlyRenamed();
    });
    writer.write("Note: same devices under other names of the kernel", changes,
                 [](const DeviceChange& change) { return change.isOnlyRenamed(); });
    const bool isUntold = !report.untold.isNone();
    std::string out = comparedWord(report.isEqual(), isUntold, format) + "  ";
    out += !report.isEqual()
               ? fmt::format("{} missing, {} added, {} moved, {} changed", missing, added, moved, changed)
               : fmt::format("the two machines hold the same{}", isUntold ? ", as far as both recordings tell" : "");
    out += "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"before", printable(std::string_view(report.before))});
    table.addRow({"after", printable(std::string_view(report.after))});
    if (isUntold) {
        table.addRow({"not compared", untoldText(report.untold)});
    }
    table.write(out, format);
    return out + writer.take();
}

ReportWriters<ChangesReport> changesWriters() {
    static constexpr ReportWriter<ChangesReport> WRITERS[] = {
        {"text", changesText}, {"json", changesJson}, {"junit", changesJunit}, {"csv", changesCsv}};
    return WRITERS;
}

}  // namespace vrx
