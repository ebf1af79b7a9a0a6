#include "libReport/json/EventJson.h"

namespace vrx {

void writeEvents(JsonWriter& json, const Array<TestRunEventImp>& events) {
    json.beginArray();
    for (const TestRunEventImp& event : events) {
        json.beginObject();
        json.key("source").value(event.source());
        json.key("name").value(event.name());
        json.key("type").value(std::int64_t{event.type().code()});
        json.key("variables").beginObject();
        for (const TestRunEventImp::Variable& variable : event.variables()) {
            json.key(variable.name.toUtf8()).value(variable.value.toString());
        }
        json.endObject();
        json.endObject();
    }
    json.endArray();
}

}  // namespace vrx
