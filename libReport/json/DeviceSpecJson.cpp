#include "libReport/json/DeviceSpecJson.h"

namespace vrx {

void writeDevice(JsonWriter& json, const Inventory::DeviceSpec& device) {
    json.beginObject();
    json.key("name").value(device.name);
    json.key("type").value(device.type);
    json.key("hwLocator").value(device.hwLocator);
    json.key("osLocator").value(device.osLocator);
    json.endObject();
}

void writeDevices(JsonWriter& json, const Array<Inventory::DeviceSpec>& devices) {
    json.beginArray();
    for (const Inventory::DeviceSpec& device : devices) {
        writeDevice(json, device);
    }
    json.endArray();
}

}  // namespace vrx
