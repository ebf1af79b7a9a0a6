#include "libReport/changes/ChangesReport.h"
#include "libReport/changes/FleetChangesReport.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

namespace {

using MachineKind = FleetMachine::Kind;

void writeOptional(JsonWriter& json, std::string_view key, const std::optional<String>& text) {
    json.key(key);
    if (text) {
        json.value(*text);
    } else {
        json.null();
    }
}

void writeFleetDevice(JsonWriter& json, const FleetDeviceChange& change) {
    json.beginObject();
    json.key("kind").value(nameOf(change.kind));
    json.key("type").value(change.device.type);
    json.key("name").value(change.device.name);
    json.key("placeBefore").value(change.placeBefore);
    json.key("placeAfter").value(change.placeAfter);
    json.key("otherMachine").value(std::string_view(change.otherMachine));
    json.key("otherPlace").value(change.otherPlace);
    json.key("values").beginArray();
    for (const ValueChange& value : change.values) {
        json.beginObject();
        json.key("what").value(nameOf(value.what));
        json.key("key").value(value.key);
        writeOptional(json, "before", value.before);
        writeOptional(json, "after", value.after);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

void writeFleetMachine(JsonWriter& json, const FleetMachine& machine) {
    json.beginObject();
    json.key("kind").value(nameOf(machine.kind));
    json.key("before").value(std::string_view(machine.before));
    json.key("after").value(std::string_view(machine.after));
    json.key("model").value(machine.key.model);
    json.key("serialNumber").value(machine.key.serialNumber);
    json.key("uuid").value(machine.key.uuid);
    json.key("problem").value(std::string_view(machine.problem));
    json.key("untoldDevices").value(static_cast<std::int64_t>(machine.untold.devices));
    json.key("untoldValues").value(static_cast<std::int64_t>(machine.untold.values));
    json.key("changes").beginArray();
    for (const FleetDeviceChange& change : machine.changes) {
        writeFleetDevice(json, change);
    }
    json.endArray();
    json.endObject();
}

}  // namespace

std::string fleetChangesJson(const FleetChangesReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.show-fleet-changes/1"));
    json.key("equal").value(report.isEqual());
    json.key("before").value(std::string_view(report.before));
    json.key("after").value(std::string_view(report.after));
    json.key("counts").beginObject();
    for (const MachineKind kind :
         {MachineKind::Equal, MachineKind::Changed, MachineKind::Came, MachineKind::Went, MachineKind::Unreadable}) {
        json.key(nameOf(kind)).value(static_cast<std::int64_t>(report.count(kind)));
    }
    json.endObject();
    json.key("machines").beginArray();
    for (const FleetMachine& machine : report.machines) {
        writeFleetMachine(json, machine);
    }
    json.endArray();
    json.endObject();
    return json.take();
}

}  // namespace vrx
