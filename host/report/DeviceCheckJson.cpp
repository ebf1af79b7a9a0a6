#include "host/report/DeviceCheckReport.h"
#include "host/report/EventJson.h"
#include "host/report/JsonWriter.h"

namespace vrx::host {

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

}  // namespace vrx::host
