#include "libInventory/script/ScriptElement.h"
#include "libReport/text/DeviceSpecJson.h"
#include "libReport/text/JsonWriter.h"
#include "libReport/writers/EventJson.h"
#include "libReport/writers/ScriptFinding.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

void writeFindings(JsonWriter& json, const XmlDocument* annotatedScript) {
    json.beginArray();
    if (annotatedScript) {
        for (const ScriptFinding& finding : findingsOf(*annotatedScript)) {
            json.beginObject();
            json.key("element").value(finding.element->Name());
            json.key("location").value(placeOf(*finding.element));
            json.key("messages").beginArray();
            for (const String& message : finding.messages) {
                json.value(message);
            }
            json.endArray();
            json.endObject();
        }
    }
    json.endArray();
}

void writeFileErrors(JsonWriter& json, const Array<String>& errors) {
    json.beginArray();
    for (const String& error : errors) {
        json.value(error);
    }
    json.endArray();
}

}  // namespace

std::string checkJson(const CheckReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("passed").value(report.verdict == Verdict::Passed);
    json.key("inventorySatisfied");
    report.inventorySatisfied ? json.value(*report.inventorySatisfied) : json.null();
    json.key("script").value(report.script);
    json.key("state");
    report.state ? json.value(*report.state) : json.null();
    json.key("fileErrors");
    writeFileErrors(json, report.fileErrors);
    json.key("events");
    writeEvents(json, report.events);
    json.key("unsatisfiedDevices");
    writeDevices(json, report.missing);
    json.key("extraDevices");
    writeDevices(json, report.extra);
    json.key("findings");
    writeFindings(json, report.annotatedScript);
    json.key("annotatedScript");
    report.annotatedScript ? json.value(report.annotatedScript->toString()) : json.null();
    json.endObject();
    return json.take();
}

}  // namespace vrx
