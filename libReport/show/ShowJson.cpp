#include "libReport/json/JsonWriter.h"
#include "libReport/show/ShowReport.h"
#include "libReport/text/UnreadText.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

void writeProperty(JsonWriter& json, const IPropertyImp& property) {
    json.beginObject();
    json.key("key").value(property.key());
    json.key("type").value(property.type().toString());
    json.key("values").inlineArray(property.value().toStringArray(false));
    json.endObject();
}

void writeDevice(JsonWriter& json, const IDeviceImp& device) {
    json.beginObject();
    json.key("guid").value(device.guid());
    json.key("type").value(device.type().toString());
    json.key("capabilities").inlineArray(device.capabilities().names());
    json.key("name").value(device.name());
    json.key("hwLocator").value(device.hwLocator());
    json.key("osLocator").value(device.osLocator());
    json.key("properties").beginArray();
    for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
        writeProperty(json, *property);
    }
    json.endArray();
    json.endObject();
}

}  // namespace

std::string showJson(const ShowReport& report, const TextFormat&) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.show/1"));
    json.key("devices").beginArray();
    for (const IDeviceImp* const device : report.devices) {
        writeDevice(json, *device);
    }
    json.endArray();
    json.key("unread");
    writeUnread(json, report.machine.unread());
    json.endObject();
    return json.take();
}

}  // namespace vrx
