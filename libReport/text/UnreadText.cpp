#include "libReport/text/UnreadText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

namespace {

std::string typesText(const UnreadSource& unread) {
    return unread.types.isAll() ? "devices of any type" : printable(unread.types.toString());
}

std::string propertiesText(const UnreadSource& unread) {
    std::string text;
    for (const String& key : unread.properties) {
        if (key == UnreadSource::ANY_PROPERTY) {
            return "some properties";
        }
        text += (text.empty() ? "" : ", ") + printable(key);
    }
    return text;
}

}  // namespace

std::string unreadText(const UnreadSource& unread) {
    const std::string why = printable(unread.source) + " (" + printable(unread.reason) + ")";
    if (unread.leavesUntold(unread.types)) {
        return why;
    }
    return why + ": " +
           (unread.properties.isEmpty() ? typesText(unread) : propertiesText(unread) + " of " + typesText(unread));
}

void writeUnread(JsonWriter& json, const Array<UnreadSource>& unread) {
    json.beginArray();
    for (const UnreadSource& one : unread) {
        json.beginObject();
        json.key("source").value(one.source);
        json.key("reason").value(one.reason);
        json.key("types").inlineArray(one.types.names());
        if (!one.properties.isEmpty()) {
            json.key("properties").inlineArray(one.properties);
        }
        json.endObject();
    }
    json.endArray();
}

}  // namespace vrx
