#include "libReport/json/JsonWriter.h"
#include "libReport/parts/PartsReport.h"

namespace vrx {

namespace {

StringView nameOf(Inventory::ParsePartsResult result) noexcept {
    switch (result) {
        case Inventory::PartsParsed: return u"PartsParsed";
        case Inventory::PartsBlank: return u"PartsBlank";
        case Inventory::PartsEmptyInput: return u"PartsEmptyInput";
        case Inventory::PartsXmlError: return u"PartsXmlError";
        case Inventory::PartsNoRoot: break;
    }
    return u"PartsNoRoot";
}

}  // namespace

std::string partsJson(const PartsReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.parts-parse/1"));
    json.key("result").value(std::int64_t{report.result});
    json.key("resultName").value(nameOf(report.result));
    json.key("error").value(report.error);
    json.key("parts").beginArray();
    for (const Inventory::PartSpec& part : report.parts) {
        json.beginObject();
        json.key("id").value(part.id);
        json.key("name").value(part.name);
        json.key("description").value(part.description);
        json.key("xml").value(part.xml);
        json.endObject();
    }
    json.endArray();
    json.key("mistakes");
    writeMistakes(json, report.mistakes);
    json.endObject();
    return json.take();
}

}  // namespace vrx
