/// Metrics in the text format of Prometheus, for the textfile collector. Every series names the script, so that the
/// files of several checks stand side by side. What changes with every fault, such as its words, is no label.

#include <fmt/format.h>

#include <array>

#include "libCommon/text/PrintableText.h"
#include "libReport/formats/FaultCounts.h"
#include "libReport/text/TextPieces.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

std::string label(std::string_view name, std::string_view value) {
    std::string text = fmt::format("{}=\"", name);
    for (const char character : printable(value)) {
        text += character == '\\' || character == '"' ? "\\" : "";
        text += character;
    }
    return text + '"';
}

class MetricsText {
public:
    explicit MetricsText(const CheckReport& report) : m_script(label("script", inputName(report.script))) {}

    void begin(std::string_view name, std::string_view help) {
        m_name = fmt::format("vrx_inventory_{}", name);
        m_text += fmt::format("# HELP {0} {1}\n# TYPE {0} gauge\n", m_name, help);
    }

    template <typename Number>
    void add(Number value, const std::string& labels = std::string()) {
        m_text += fmt::format("{}{{{}{}{}}} {}\n", m_name, m_script, labels.empty() ? "" : ",", labels, value);
    }

    template <typename Number>
    void single(std::string_view name, std::string_view help, Number value) {
        begin(name, help);
        add(value);
    }

    const std::string& text() const noexcept { return m_text; }

private:
    std::string m_script;
    std::string m_name;
    std::string m_text;
};

void addVerdict(MetricsText& metrics, const CheckReport& report) {
    metrics.single("passed", "Whether the check passed (1) or not (0).", report.verdict == Verdict::Passed ? 1 : 0);
    metrics.begin("verdict", "The verdict of the check: 1 for the one that holds.");
    for (const Verdict verdict : {Verdict::Passed, Verdict::Failed, Verdict::Undecided, Verdict::Refused}) {
        metrics.add(nameOf(report.verdict) == nameOf(verdict) ? 1 : 0, label("verdict", nameOf(verdict)));
    }
}

void addFaults(MetricsText& metrics, const CheckReport& report) {
    metrics.begin("faults", "Things that are wrong with the machine, by kind.");
    const auto counts = faultCounts(report.faults);
    for (const FaultKind kind : allFaultKinds()) {
        metrics.add(counts[static_cast<std::size_t>(kind)], label("kind", nameOf(kind)));
    }
}

void addMachine(MetricsText& metrics, const CheckReport& report) {
    metrics.begin("machine_info", "The machine and the program that checked it.");
    metrics.add(1, label("manufacturer", report.machine.manufacturer.toUtf8()) + "," +
                       label("model", report.machine.model.toUtf8()) + "," +
                       label("serial_number", report.machine.serialNumber.toUtf8()) + "," +
                       label("host_name", report.machine.hostName.toUtf8()) + "," + label("version", report.version));
}

}  // namespace

std::string checkPrometheus(const CheckReport& report, const TextFormat&) {
    MetricsText metrics(report);
    addVerdict(metrics, report);
    addFaults(metrics, report);
    metrics.single("waived_faults", "Faults that waivers cover.", report.waived.size());
    metrics.single("expired_waivers", "Waivers that would cover a fault, and have expired.",
                   report.expiredWaivers.size());
    metrics.single("mistakes", "Mistakes for which the script was refused.", report.mistakes.size());
    metrics.single("device_elements", "Devices that the script asks for.", report.deviceElements);
    metrics.single("devices", "Devices of the machine.", report.machineDevices);
    metrics.single("unread_sources", "Sources of the machine that could not be read.", report.unread.size());
    metrics.single("check_duration_seconds", "How long the check took.",
                   std::chrono::duration<double>(report.duration).count());
    metrics.single("check_timestamp_seconds", "When the check began.", report.started.secondsSinceEpoch());
    addMachine(metrics, report);
    return metrics.text();
}

}  // namespace vrx
