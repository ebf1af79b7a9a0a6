#include "libReport/changes/ChangesReport.h"
#include "libReport/json/JsonWriter.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

std::string_view nameOf(ValueChange::What what) noexcept {
    switch (what) {
        case ValueChange::What::Name: return "name";
        case ValueChange::What::OsLocator: return "osLocator";
        case ValueChange::What::Capabilities: return "capabilities";
        case ValueChange::What::Property: break;
    }
    return "property";
}

std::string_view kindOf(const DeviceChange& change) {
    if (change.before == nullptr || change.after == nullptr) {
        return change.after == nullptr ? "missing" : "added";
    }
    return change.isMoved() ? "moved" : change.isOnlyRenamed() ? "renamed" : "changed";
}

namespace {

void writeText(JsonWriter& json, std::string_view key, const std::optional<String>& text) {
    json.key(key);
    if (text) {
        json.value(*text);
    } else {
        json.null();
    }
}

void writeDevice(JsonWriter& json, std::string_view key, const IDeviceImp* device) {
    json.key(key);
    if (device == nullptr) {
        json.null();
        return;
    }
    json.beginObject();
    json.key("guid").value(device->guid());
    json.key("type").value(device->type().toString());
    json.key("name").value(device->name());
    json.key("hwLocator").value(device->hwLocator());
    json.key("osLocator").value(device->osLocator());
    json.endObject();
}

void writeChange(JsonWriter& json, const DeviceChange& change) {
    json.beginObject();
    json.key("kind").value(kindOf(change));
    writeDevice(json, "before", change.before);
    writeDevice(json, "after", change.after);
    json.key("values").beginArray();
    for (const ValueChange& value : change.values) {
        json.beginObject();
        json.key("what").value(nameOf(value.what));
        json.key("key").value(value.key);
        writeText(json, "before", value.before);
        writeText(json, "after", value.after);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

}  // namespace

std::string changesJson(const ChangesReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.show-changes/1"));
    json.key("equal").value(report.isEqual());
    json.key("before").value(report.before);
    json.key("after").value(report.after);
    json.key("changes").beginArray();
    for (const DeviceChange& change : report.changes) {
        writeChange(json, change);
    }
    json.endArray();
    json.key("untoldDevices").value(static_cast<std::int64_t>(report.untold.devices));
    json.key("untoldValues").value(static_cast<std::int64_t>(report.untold.values));
    json.endObject();
    return json.take();
}

}  // namespace vrx
