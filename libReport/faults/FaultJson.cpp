#include "libReport/faults/FaultJson.h"

#include "libReport/faults/FaultText.h"
#include "libReport/json/DeviceSpecJson.h"

namespace vrx {

namespace {

class FaultWriter {
public:
    FaultWriter(JsonWriter& json, std::string_view file) : m_json(json), m_file(file) {}

    void write(const Fault& fault, std::string_view text) {
        m_json.key("kind").value(nameOf(fault.kind));
        m_json.key("text").value(text);
        writePlace("element", fault.place);
        m_json.key("type").value(fault.device ? fault.device->spec.type : fault.asked.type);
        writePart(fault.part);
        m_json.key("asked");
        writeDevice(m_json, fault.asked);
        writeIdentity("device", fault.device);
        writeIdentity("other", fault.other);
        writeDifferences("differences", fault.differences);
        m_json.key("candidates").value(static_cast<std::int64_t>(fault.candidates));
        writeNearest(fault.nearest);
        m_json.key("takenBy");
        fault.taken ? writePlace(fault.taken->holder) : m_json.null();
        m_json.key("alternatives").beginArray();
        for (const Inventory::DeviceSpec& one : fault.alternatives) {
            writeDevice(m_json, one);
        }
        m_json.endArray();
        m_json.key("otherMachine").value(fault.isOfOtherMachine);
        writeWithIt(fault.withIt);
        writeShortage(fault.shortage);
    }

private:
    void writePlace(const ElementPlace& place) {
        m_json.beginObject();
        m_json.key("file").value(m_file);
        m_json.key("row").value(static_cast<std::int64_t>(place.row));
        m_json.key("column").value(static_cast<std::int64_t>(place.column));
        m_json.endObject();
    }

    /// A place in no script, of what is wrong with the whole, is null.
    void writePlace(std::string_view key, const ElementPlace& place) {
        m_json.key(key);
        place.row == 0 ? m_json.null() : writePlace(place);
    }

    void writePart(const std::optional<PartName>& part) {
        m_json.key("part");
        if (!part) {
            m_json.null();
            return;
        }
        m_json.beginObject();
        m_json.key("id").value(part->id);
        m_json.key("name").value(part->name);
        m_json.key("description").value(part->description);
        m_json.endObject();
    }

    void writeIdentity(std::string_view key, const std::optional<DeviceIdentity>& device) {
        m_json.key(key);
        if (!device) {
            m_json.null();
            return;
        }
        m_json.beginObject();
        m_json.key("guid").value(device->guid);
        m_json.key("type").value(device->spec.type);
        m_json.key("name").value(device->spec.name);
        m_json.key("hwLocator").value(device->spec.hwLocator);
        m_json.key("osLocator").value(device->spec.osLocator);
        m_json.key("manufacturer").value(device->manufacturer);
        m_json.key("model").value(device->model);
        m_json.key("partNumber").value(device->partNumber);
        m_json.key("serialNumber").value(device->serialNumber);
        m_json.key("firmware").value(device->firmware);
        m_json.endObject();
    }

    void writeDifferences(std::string_view key, const std::vector<Difference>& differences) {
        m_json.key(key).beginArray();
        for (const Difference& difference : differences) {
            m_json.beginObject();
            m_json.key("what").value(nameOfWhat(difference));
            m_json.key("property").value(difference.key);
            m_json.key("expected").beginArray();
            for (const String& pattern : difference.expected) {
                m_json.value(pattern);
            }
            m_json.endArray();
            m_json.key("found");
            difference.found ? m_json.value(*difference.found) : m_json.null();
            writePlace("place", difference.place);
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeWithIt(const std::vector<FoldedFault>& folded) {
        m_json.key("withIt").beginArray();
        for (const FoldedFault& one : folded) {
            m_json.beginObject();
            m_json.key("device");
            writeDevice(m_json, one.spec);
            writePlace("element", one.place);
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeShortage(const std::optional<Shortage>& shortage) {
        if (!shortage) {
            return;
        }
        m_json.key("shortage").beginObject();
        m_json.key("elements").value(static_cast<std::int64_t>(shortage->elements));
        m_json.key("devices").value(static_cast<std::int64_t>(shortage->devices));
        m_json.key("elementPlaces").beginArray();
        for (const ElementPlace& place : shortage->elementPlaces) {
            writePlace(place);
        }
        m_json.endArray();
        m_json.key("deviceSpecs").beginArray();
        for (const Inventory::DeviceSpec& device : shortage->deviceSpecs) {
            writeDevice(m_json, device);
        }
        m_json.endArray();
        m_json.endObject();
    }

    void writeNearest(const std::optional<NearDevice>& nearest) {
        m_json.key("nearest");
        if (!nearest) {
            m_json.null();
            return;
        }
        m_json.beginObject();
        m_json.key("device");
        writeDevice(m_json, nearest->device);
        writeDifferences("differences", nearest->differences);
        m_json.endObject();
    }

    JsonWriter& m_json;
    std::string_view m_file;
};

}  // namespace

void writeFaultFields(JsonWriter& json, const Fault& fault, std::string_view file) {
    writeFaultFields(json, fault, file, faultText(fault));
}

void writeFaultFields(JsonWriter& json, const Fault& fault, std::string_view file, std::string_view text) {
    FaultWriter(json, file).write(fault, text);
}

std::string_view nameOfWhat(const Difference& difference) noexcept {
    switch (difference.what) {
        case Difference::What::Name: return "name";
        case Difference::What::OsLocator: return "osLocator";
        case Difference::What::Type: return "type";
        case Difference::What::Property: break;
    }
    return "property";
}

void writeFaults(JsonWriter& json, const std::vector<Fault>& faults, std::string_view file) {
    json.beginArray();
    for (const Fault& fault : faults) {
        json.beginObject();
        writeFaultFields(json, fault, file);
        json.endObject();
    }
    json.endArray();
}

}  // namespace vrx
