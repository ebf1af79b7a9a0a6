#include "libReport/json/DeviceSpecJson.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/parts/PartGenerationReport.h"

namespace vrx {

namespace {

void writeParts(JsonWriter& json, const Array<Inventory::PartSpec>& parts) {
    json.beginArray();
    for (const Inventory::PartSpec& part : parts) {
        json.beginObject();
        json.key("id").value(part.id);
        json.key("name").value(part.name);
        json.key("description").value(part.description);
        json.key("devices").inlineArray(part.devices);
        json.endObject();
    }
    json.endArray();
}

void writeDeviceToParts(JsonWriter& json, const Inventory::DeviceToPartsTable& table) {
    json.beginObject();
    for (const auto& entry : table) {
        Array<String> names;
        for (const Inventory::PartSpec& part : entry.value) {
            names.append(part.name);
        }
        json.key(entry.key.toUtf8()).inlineArray(names);
    }
    json.endObject();
}

void writeResult(JsonWriter& json, const PartGenerationReport& report) {
    if (!report.mistakes.empty()) {
        json.null();
        return;
    }
    json.beginObject();
    json.key("code").value(std::int64_t{report.result.code()});
    json.key("text").value(report.result.toString());
    json.endObject();
}

}  // namespace

std::string partGenerationJson(const PartGenerationReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.parts-generate/1"));
    json.key("generated").value(report.isGenerated());
    json.key("mistakes");
    writeMistakes(json, report.mistakes);
    json.key("result");
    writeResult(json, report);
    json.key("generatedParts");
    writeParts(json, report.generatedParts);
    json.key("ambiguousGroups").beginArray();
    for (const Array<Inventory::PartSpec>& group : report.ambiguousGroups) {
        writeParts(json, group);
    }
    json.endArray();
    json.key("extraDevices");
    writeDevices(json, report.extraDevices);
    json.key("deviceToParts");
    writeDeviceToParts(json, report.deviceToParts);
    json.key("report").value(report.document.toString());
    json.endObject();
    return json.take();
}

}  // namespace vrx
