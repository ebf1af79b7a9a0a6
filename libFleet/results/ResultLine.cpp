/// Lines are what joins the results of many processes: everything that a summary, a table or a page says can be had
/// from them. A line's faults are the objects that `check --format json` writes.

#include "libFleet/results/ResultLine.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <optional>

#include "libReport/faults/FaultJson.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

namespace {

namespace json = boost::json;

constexpr std::string_view SCHEMA = "vrx-inventory.fleet/1";

void writeMachine(JsonWriter& out, const FleetResult& result, const CheckReport* report) {
    out.beginObject();
    out.key("manufacturer").value(std::string_view(result.manufacturer));
    out.key("model").value(std::string_view(result.model));
    out.key("serialNumber").value(std::string_view(result.serialNumber));
    out.key("hostName").value(std::string_view(result.hostName));
    out.key("devices").value(static_cast<std::int64_t>(report == nullptr ? 0 : report->machineDevices));
    out.endObject();
}

void writeFaults(JsonWriter& out, const FleetResult& result, const CheckReport* report) {
    out.beginArray();
    for (std::size_t i = 0; report != nullptr && i < report->faults.size(); ++i) {
        out.beginObject();
        writeFaultFields(out, report->faults[i], result.script, result.faults[i].text);
        out.endObject();
    }
    out.endArray();
}

/// Empty for a member that is absent or no text.
std::string textOf(const json::object& object, std::string_view key) {
    const json::value* const value = object.if_contains(key);
    return value != nullptr && value->is_string() ? std::string(value->get_string()) : std::string();
}

const json::object& objectOf(const json::object& object, std::string_view key) {
    static const json::object NONE;
    const json::value* const value = object.if_contains(key);
    return value != nullptr && value->is_object() ? value->get_object() : NONE;
}

std::uint64_t numberOf(const json::object& object, std::string_view key) {
    const json::value* const value = object.if_contains(key);
    return value != nullptr && value->is_int64() && value->get_int64() > 0
               ? static_cast<std::uint64_t>(value->get_int64())
               : 0;
}

const json::array& arrayOf(const json::object& object, std::string_view key) {
    static const json::array NONE;
    const json::value* const value = object.if_contains(key);
    return value != nullptr && value->is_array() ? value->get_array() : NONE;
}

FleetFault readFault(const json::object& fault) {
    const json::object& asked = objectOf(fault, "asked");
    const json::object& device = objectOf(fault, "device");
    const json::object& element = objectOf(fault, "element");
    FaultFacts facts{textOf(fault, "kind"),          textOf(fault, "type"),
                     textOf(asked, "name"),          textOf(asked, "hwLocator"),
                     textOf(asked, "osLocator"),     textOf(device, "hwLocator"),
                     textOf(device, "serialNumber"), numberOf(element, "row"),
                     numberOf(element, "column"),    {}};
    for (const json::value& each : arrayOf(fault, "differences")) {
        if (each.is_object()) {
            const std::string what = textOf(each.get_object(), "what");
            facts.differences.push_back(what == "property" ? textOf(each.get_object(), "property") : what);
        }
    }
    return {keyOf(std::move(facts)), textOf(fault, "text")};
}

std::optional<FleetVerdict> verdictNamed(std::string_view name) {
    for (const FleetVerdict verdict :
         {FleetVerdict::Passed, FleetVerdict::Failed, FleetVerdict::Undetermined, FleetVerdict::Unreadable}) {
        if (nameOf(verdict) == name) {
            return verdict;
        }
    }
    return std::nullopt;
}

void readMachine(const json::object& machine, FleetResult& result) {
    result.manufacturer = textOf(machine, "manufacturer");
    result.model = textOf(machine, "model");
    result.serialNumber = textOf(machine, "serialNumber");
    result.hostName = textOf(machine, "hostName");
}

}  // namespace

std::string resultLine(const FleetResult& result, const LineBasis& basis) {
    JsonWriter out(JsonWriter::Layout::OneLine);
    out.beginObject();
    out.key("schema").value(SCHEMA);
    out.key("file").value(std::string_view(result.file));
    out.key("script");
    result.script.empty() ? out.null() : out.value(std::string_view(result.script));
    out.key("time").value(std::string_view(result.time));
    out.key("machine");
    writeMachine(out, result, basis.report);
    out.key("verdict").value(nameOf(result.verdict));
    out.key("headline").value(std::string_view(result.headline));
    out.key("faults");
    writeFaults(out, result, basis.report);
    out.key("waived").value(static_cast<std::int64_t>(basis.report == nullptr ? 0 : basis.report->waived.size()));
    out.key("notes").beginArray();
    for (const std::string& note : basis.notes) {
        out.value(std::string_view(note));
    }
    out.endArray();
    if (result.isInternalError) {
        out.key("internalError").value(true);
    }
    out.endObject();
    return out.take();
}

bool readResultLine(std::string_view line, FleetResult& result, std::string& reason) {
    json::error_code failure;
    const json::value value = json::parse(json::string_view(line.data(), line.size()), failure);
    if (failure || !value.is_object()) {
        reason = failure ? "this is no JSON: " + failure.message() : "this is no JSON object";
        return false;
    }
    const json::object& object = value.get_object();
    const std::optional<FleetVerdict> verdict = verdictNamed(textOf(object, "verdict"));
    if (textOf(object, "schema") != SCHEMA || !verdict) {
        reason = "this is no result of \"fleet\"; expected an object with the schema \"" + std::string(SCHEMA) + "\"";
        return false;
    }
    result = FleetResult();
    result.file = textOf(object, "file");
    result.script = textOf(object, "script");
    result.time = textOf(object, "time");
    readMachine(objectOf(object, "machine"), result);
    result.verdict = *verdict;
    result.headline = textOf(object, "headline");
    for (const json::value& fault : arrayOf(object, "faults")) {
        if (fault.is_object()) {
            result.faults.push_back(readFault(fault.get_object()));
        }
    }
    result.isInternalError = object.contains("internalError");
    result.line = line;
    result.line += result.line.ends_with('\n') ? "" : "\n";
    return true;
}

}  // namespace vrx
