#include "libReport/json/EventJson.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/writers/CheckHeadline.h"
#include "libReport/writers/Writers.h"

namespace vrx {

std::string deviceCheckJson(const DeviceCheckReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.check-device/1"));
    json.key("passed").value(report.verdict == Verdict::Passed);
    json.key("verdict").value(nameOf(report.verdict));
    json.key("headline").value(std::string_view(headlineOf(report)));
    json.key("mistakes");
    writeMistakes(json, report.mistakes);
    json.key("events");
    writeEvents(json, report.events);
    json.key("annotatedScript");
    report.annotatedScript ? json.value(*report.annotatedScript) : json.null();
    json.endObject();
    return json.take();
}

}  // namespace vrx
