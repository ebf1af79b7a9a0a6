#include "libReport/text/DeviceSpecJson.h"

namespace vrx {

void writeDevices(JsonWriter& json, const Array<Inventory::DeviceSpec>& devices) {
    json.beginArray();
    for (const Inventory::DeviceSpec& device : devices) {
        json.beginObject();
        json.key("name").value(device.name);
        json.key("type").value(device.type);
        json.key("hwLocator").value(device.hwLocator);
        json.key("osLocator").value(device.osLocator);
        json.endObject();
    }
    json.endArray();
}

}  // namespace vrx
