/// The output of a test and validation run as the Open Compute Project describes it, schema version 2.0: one JSON
/// object a line, numbered. The check is a run of one step. Whether a device that the script asks for is there is a
/// measurement; so is every property that differs, with the patterns it is held against as validators. Each device and
/// rule ends in a diagnosis. What kept the check from being made is an error, and then the run has no result.

#include <fmt/format.h>

#include <algorithm>

#include "libReport/faults/DifferenceText.h"
#include "libReport/formats/CheckCases.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/text/TextPieces.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

constexpr std::string_view STEP = "0";
constexpr std::string_view MACHINE = "machine";

std::string_view typeOf(CheckCase::Outcome outcome) noexcept {
    switch (outcome) {
        case CheckCase::Outcome::Passed: return "PASS";
        case CheckCase::Outcome::Failed: return "FAIL";
        default: return "UNKNOWN";
    }
}

class WritingOcp {
public:
    explicit WritingOcp(const CheckReport& report) : m_report(report), m_time(report.started.toIso8601()) {}

    std::string text() {
        writeVersion();
        writeStart();
        inStep([](JsonWriter& json) {
            json.key("testStepStart").beginObject();
            json.key("name").value(std::string_view("inventory"));
            json.endObject();
        });
        for (const CheckCase& one : checkCases(m_report)) {
            writeCase(one);
        }
        inStep([this](JsonWriter& json) {
            json.key("testStepEnd").beginObject();
            json.key("status").value(status());
            json.endObject();
        });
        writeEnd();
        return std::move(m_text);
    }

private:
    template <typename Write>
    void line(const Write& write) {
        JsonWriter json(JsonWriter::Layout::OneLine);
        json.beginObject();
        write(json);
        json.key("sequenceNumber").value(m_number++);
        json.key("timestamp").value(m_time);
        json.endObject();
        m_text += json.take();
    }

    template <typename Write>
    void inRun(const Write& write) {
        line([&write](JsonWriter& json) {
            json.key("testRunArtifact").beginObject();
            write(json);
            json.endObject();
        });
    }

    template <typename Write>
    void inStep(const Write& write) {
        line([&write](JsonWriter& json) {
            json.key("testStepArtifact").beginObject();
            write(json);
            json.key("testStepId").value(STEP);
            json.endObject();
        });
    }

    void writeVersion() {
        line([](JsonWriter& json) {
            json.key("schemaVersion").beginObject();
            json.key("major").value(std::int64_t{2});
            json.key("minor").value(std::int64_t{0});
            json.endObject();
        });
    }

    void writeStart() {
        inRun([this](JsonWriter& json) {
            json.key("testRunStart").beginObject();
            json.key("name").value(std::string_view("inventory check"));
            json.key("version").value(m_report.version);
            json.key("commandLine").value(fmt::format("{} check {}", PROGRAM_NAME, m_report.script));
            json.key("parameters").beginObject();
            json.key("script").value(std::string_view(m_report.script));
            json.endObject();
            writeMachine(json);
            json.endObject();
        });
    }

    void writeMachine(JsonWriter& json) const {
        const MachineIdentity& machine = m_report.machine;
        const std::string name = m_report.state ? inputName(*m_report.state) : "this machine";
        json.key("dutInfo").beginObject();
        json.key("dutInfoId").value(machine.serialNumber.isEmpty() ? MACHINE : machine.serialNumber.toUtf8());
        json.key("name").value(machine.hostName.isEmpty() ? name : machine.hostName.toUtf8());
        json.key("hardwareInfos").beginArray();
        json.beginObject();
        json.key("hardwareInfoId").value(MACHINE);
        json.key("name").value(machine.model.isEmpty() ? String::UTF8Decode(name) : machine.model);
        json.key("manufacturer").value(machine.manufacturer);
        json.key("serialNumber").value(machine.serialNumber);
        json.endObject();
        json.endArray();
        json.endObject();
    }

    void writeCase(const CheckCase& one) {
        if (one.outcome == CheckCase::Outcome::Skipped) {
            return;
        }
        if (one.element == nullptr && one.faults.empty()) {
            writeError(one);
            return;
        }
        if (one.element != nullptr) {
            writePresence(one);
        }
        for (const Fault* const fault : one.faults) {
            for (const Difference& difference : fault->differences) {
                writeDifference(one, difference);
            }
        }
        writeDiagnosis(one);
    }

    /// Whether a device is there; of rules, whether the machine keeps to them. Nobody measured what is not known.
    void writePresence(const CheckCase& one) {
        if (one.outcome == CheckCase::Outcome::Undetermined) {
            return;
        }
        inStep([&one](JsonWriter& json) {
            json.key("measurement").beginObject();
            json.key("name").value(std::string_view(one.name));
            json.key("value").value(one.outcome == CheckCase::Outcome::Passed);
            json.key("validators").beginArray();
            writeValidator(json, "met", "EQUAL", [&json] { json.value(true); });
            json.endArray();
            json.key("hardwareInfoId").value(MACHINE);
            json.endObject();
        });
    }

    void writeDifference(const CheckCase& one, const Difference& difference) {
        inStep([&](JsonWriter& json) {
            json.key("measurement").beginObject();
            json.key("name").value(one.name + ": " + subjectText(difference));
            json.key("value").value(difference.found ? difference.found->toUtf8() : std::string());
            json.key("validators").beginArray();
            const bool isPattern =
                difference.what == Difference::What::Property || difference.what == Difference::What::Name;
            for (const String& expected : difference.expected) {
                writeValidator(json, expectedText(difference), isPattern ? "REGEX_MATCH" : "EQUAL",
                               [&] { json.value(expected); });
            }
            json.endArray();
            json.key("hardwareInfoId").value(MACHINE);
            json.endObject();
        });
    }

    template <typename Value>
    static void writeValidator(JsonWriter& json, std::string_view name, std::string_view type, const Value& value) {
        json.beginObject();
        json.key("name").value(name);
        json.key("type").value(type);
        json.key("value");
        value();
        json.endObject();
    }

    void writeDiagnosis(const CheckCase& one) {
        inStep([&](JsonWriter& json) {
            json.key("diagnosis").beginObject();
            json.key("verdict").value(one.kind.empty() ? std::string_view("present") : std::string_view(one.kind));
            json.key("type").value(typeOf(one.outcome));
            json.key("message").value(messageOf(one));
            json.key("hardwareInfoId").value(MACHINE);
            json.endObject();
        });
    }

    static std::string messageOf(const CheckCase& one) {
        std::string text = one.messages.empty() ? one.name : std::string();
        for (const std::string& message : one.messages) {
            text += (text.empty() ? "" : "; ") + message;
        }
        return text;
    }

    void writeError(const CheckCase& one) {
        inStep([&](JsonWriter& json) {
            json.key("error").beginObject();
            json.key("symptom").value(std::string_view(one.kind));
            json.key("message").value(placeInScript(m_report, one.place) + ": " + messageOf(one));
            json.endObject();
        });
    }

    void writeEnd() {
        inRun([this](JsonWriter& json) {
            json.key("testRunEnd").beginObject();
            json.key("status").value(status());
            json.key("result").value(result());
            json.endObject();
        });
    }

    std::string_view status() const noexcept {
        return m_report.verdict == Verdict::Passed || m_report.verdict == Verdict::Failed ? "COMPLETE" : "ERROR";
    }

    std::string_view result() const noexcept {
        switch (m_report.verdict) {
            case Verdict::Passed: return "PASS";
            case Verdict::Failed: return "FAIL";
            default: return "NOT_APPLICABLE";
        }
    }

    const CheckReport& m_report;
    String m_time;
    std::int64_t m_number = 0;
    std::string m_text;
};

}  // namespace

std::string checkOcp(const CheckReport& report, const TextFormat&) { return WritingOcp(report).text(); }

}  // namespace vrx
