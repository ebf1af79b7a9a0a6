#include <fmt/format.h>

#include "libReport/faults/FaultJson.h"
#include "libReport/faults/WaivedText.h"
#include "libReport/json/DeviceSpecJson.h"
#include "libReport/json/EventJson.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/UnreadText.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

void writePlace(JsonWriter& json, const ElementPlace& place) {
    json.key("row").value(static_cast<std::int64_t>(place.row));
    json.key("column").value(static_cast<std::int64_t>(place.column));
}

void writeTexts(JsonWriter& json, const Array<String>& texts) {
    json.beginArray();
    for (const String& text : texts) {
        json.value(text);
    }
    json.endArray();
}

void writeDifference(JsonWriter& json, const Difference& difference) {
    json.beginObject();
    json.key("property").value(difference.key);
    json.key("expected").beginArray();
    for (const String& pattern : difference.expected) {
        json.value(pattern);
    }
    json.endArray();
    json.key("found");
    difference.found ? json.value(*difference.found) : json.null();
    writePlace(json, difference.place);
    json.endObject();
}

/// What became of a device that is not there: the nearest candidate and what is different about it, and who has those
/// that would have done.
void writeProblem(JsonWriter& json, const DeviceProblem& problem) {
    const CandidateSummary& candidates = problem.candidates;
    json.key("nearest");
    if (candidates.nearest) {
        writeDevice(json, candidates.nearest->device);
        json.key("differences").beginArray();
        for (const Difference& difference : candidates.nearest->differences) {
            writeDifference(json, difference);
        }
        json.endArray();
    } else {
        json.null();
    }
    json.key("taken").beginArray();
    for (const TakenDevice& taken : candidates.taken) {
        json.beginObject();
        json.key("device");
        writeDevice(json, taken.device);
        json.key("by").beginObject();
        writePlace(json, taken.holder);
        json.endObject();
        json.endObject();
    }
    json.endArray();
}

/// The messages of one element in one object. Findings of one element follow one another.
void writeFindings(JsonWriter& json, const CheckReport& report) {
    json.beginArray();
    for (std::size_t at = 0; at < report.findings.size();) {
        const ReportFinding& first = report.findings[at];
        Array<String> messages;
        for (; at < report.findings.size() && report.findings[at].place == first.place; ++at) {
            for (const String& text : report.findings[at].texts) {
                messages.append(text);
            }
        }
        if (messages.isEmpty()) {
            continue;
        }
        json.beginObject();
        json.key("element").value(first.element);
        json.key("location").value(std::string_view(fmt::format("({}:{})", first.place.row, first.place.column)));
        json.key("messages");
        writeTexts(json, messages);
        if (first.device && report.devices[*first.device].place == first.place) {
            writeProblem(json, report.devices[*first.device]);
        }
        json.endObject();
    }
    json.endArray();
}

std::string_view passedOverName(ImportReport::PassedOver::Kind kind) noexcept {
    static constexpr std::string_view NAMES[] = {"unknownType", "otherElement", "outsideOfList"};
    return NAMES[static_cast<std::size_t>(kind)];
}

void writeMachine(JsonWriter& json, const CheckReport& report) {
    json.beginObject();
    json.key("manufacturer").value(report.machine.manufacturer);
    json.key("model").value(report.machine.model);
    json.key("serialNumber").value(report.machine.serialNumber);
    json.key("hostName").value(report.machine.hostName);
    json.key("devices").value(static_cast<std::int64_t>(report.machineDevices));
    json.key("unread");
    writeUnread(json, report.unread);
    json.key("passedOver").beginArray();
    for (const ImportReport::PassedOver& one : report.import.passedOver) {
        json.beginObject();
        json.key("kind").value(passedOverName(one.kind));
        json.key("element").value(one.element);
        json.key("type").value(one.type);
        writePlace(json, {one.row, one.column});
        json.endObject();
    }
    json.endArray();
    json.key("noNumbers").beginArray();
    for (const ImportReport::NoNumber& one : report.import.noNumbers) {
        json.beginObject();
        json.key("property").value(one.key);
        json.key("text").value(one.text);
        writePlace(json, {one.row, one.column});
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

void writeDoubts(JsonWriter& json, const std::vector<Doubt>& doubts) {
    json.beginArray();
    for (const Doubt& doubt : doubts) {
        json.beginObject();
        json.key("asked").value(nameOf(doubt.asked));
        json.key("type").value(doubt.spec.type);
        if (!doubt.key.isEmpty()) {
            json.key("property").value(doubt.key);
        }
        json.key("cause").value(nameOf(doubt.cause));
        json.key("text").value(doubt.text);
        json.key("reason").value(doubt.reason);
        writePlace(json, doubt.place);
        json.endObject();
    }
    json.endArray();
}

}  // namespace

std::string checkJson(const CheckReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.check/1"));
    json.key("program").value(PROGRAM_NAME);
    json.key("version").value(report.version);
    json.key("time").value(report.started.toIso8601());
    json.key("duration").value(std::chrono::duration<double>(report.duration).count());
    json.key("passed").value(report.verdict == Verdict::Passed);
    json.key("inventorySatisfied");
    report.inventorySatisfied ? json.value(*report.inventorySatisfied) : json.null();
    json.key("script").value(std::string_view(report.script));
    json.key("state");
    report.state ? json.value(std::string_view(*report.state)) : json.null();
    json.key("fileErrors");
    writeTexts(json, report.fileErrors);
    json.key("events");
    writeEvents(json, report.events);
    json.key("unsatisfiedDevices");
    writeDevices(json, report.unsatisfied);
    json.key("extraDevices");
    writeDevices(json, report.extra);
    json.key("findings");
    writeFindings(json, report);
    json.key("mistakes");
    writeMistakes(json, report.mistakes);
    if (report.showsAnnotatedScript) {
        json.key("annotatedScript");
        report.annotatedScript ? json.value(report.annotatedScript->toString()) : json.null();
    }
    json.key("verdict").value(nameOf(report.verdict));
    json.key("headline").value(std::string_view(report.headline));
    json.key("assignment").value(std::string_view(report.isAssignedExactly ? "exact" : "greedy"));
    json.key("exactlyAssigned").beginArray();
    for (const ElementPlace& place : report.exactlyAssigned) {
        json.beginObject();
        writePlace(json, place);
        json.endObject();
    }
    json.endArray();
    json.key("machine");
    writeMachine(json, report);
    json.key("faults");
    writeFaults(json, report.faults, report.script);
    writeWaived(json, report);
    json.key("undetermined");
    writeDoubts(json, report.doubts);
    json.endObject();
    return json.take();
}

}  // namespace vrx
