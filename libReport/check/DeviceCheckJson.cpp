#include "libReport/check/DeviceCheckReport.h"
#include "libReport/check/EventJson.h"
#include "libReport/text/JsonWriter.h"

namespace vrx {

std::string deviceCheckJson(const DeviceCheckOutcome& outcome) {
    JsonWriter json;
    json.beginObject();
    json.key("passed").value(outcome.passed && !outcome.askedForNothing);
    json.key("events");
    writeEvents(json, outcome.events);
    json.key("annotatedScript");
    outcome.annotatedScript ? json.value(*outcome.annotatedScript) : json.null();
    json.endObject();
    return json.take();
}

}  // namespace vrx
