#include "libReport/check/CheckJsonReport.h"

#include "libInventory/script/ScriptElement.h"
#include "libReport/check/DeviceSpecJson.h"
#include "libReport/check/EventJson.h"
#include "libReport/check/ScriptFinding.h"
#include "libReport/text/JsonWriter.h"

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

std::string checkJsonReport(const CheckOutcome& outcome) {
    JsonWriter json;
    json.beginObject();
    json.key("passed").value(outcome.verdict == Verdict::Passed);
    json.key("inventorySatisfied");
    outcome.inventorySatisfied ? json.value(*outcome.inventorySatisfied) : json.null();
    json.key("script").value(outcome.script);
    json.key("state");
    outcome.state ? json.value(*outcome.state) : json.null();
    json.key("fileErrors");
    writeFileErrors(json, outcome.fileErrors);
    json.key("events");
    writeEvents(json, outcome.events);
    json.key("unsatisfiedDevices");
    writeDevices(json, outcome.missing);
    json.key("extraDevices");
    writeDevices(json, outcome.extra);
    json.key("findings");
    writeFindings(json, outcome.annotatedScript);
    json.key("annotatedScript");
    outcome.annotatedScript ? json.value(outcome.annotatedScript->toString()) : json.null();
    json.endObject();
    return json.take();
}

}  // namespace vrx
