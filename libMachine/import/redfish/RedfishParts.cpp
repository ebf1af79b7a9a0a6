#include "libMachine/import/redfish/RedfishParts.h"

#include <algorithm>

#include "libMachine/record/Letters.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

namespace json = boost::json;

constexpr RedfishField SLOT_FIELDS[] = {
    {"Status/Health", property::HEALTH, RedfishValue::VolatileText},
};

constexpr RedfishField PLACE[] = {{"Location/PartLocation/ServiceLabel", property::SLOT},
                                  {"PhysicalLocation/PartLocation/ServiceLabel", property::SLOT}};

std::string lettersAndDigits(std::string_view text) {
    std::string kept;
    for (const char unit : text) {
        if (isDigit(unit) || isSmallLetter(unit)) {
            kept += unit;
        } else if (isCapitalLetter(unit)) {
            kept += static_cast<char>(unit + 32);
        }
    }
    return kept;
}

/// Some services call a part by what identifies it. That is no place: the next machine's has another.
bool isIdentity(const RedfishPart& part) {
    const std::string id = lettersAndDigits(part.id);
    return std::ranges::any_of(
        std::initializer_list<const char*>{"SerialNumber", "MACAddress", "PermanentMACAddress", "UUID"},
        [&](const char* name) {
            const std::string value = lettersAndDigits(redfishText(*part.data, name));
            return !value.empty() && value == id;
        });
}

}  // namespace

bool isRedfishPresent(const json::object& part) {
    const std::string state = redfishText(part, "Status/State");
    return state != "Absent" && state != "Disabled";
}

void addRedfishUsage(DeviceRecord& slot, const json::object& part) {
    if (!isRedfishPresent(part)) {
        slot.add(property::USAGE, String::UTF8Decode(redfishText(part, "Status/State")));
    }
}

std::size_t RedfishParts::add(const RedfishKind& kind, const RedfishPart& part, std::size_t parent) {
    if (!take(*part.data)) {
        return Recording::NONE;
    }
    DeviceRecord device;
    device.parent = parent;
    device.hwLocator = std::string(kind.locator) + ":" + part.id;
    addRedfishFields(device, *part.data, PLACE);
    if (isRedfishPresent(*part.data)) {
        device.type = kind.type;
        addRedfishFields(device, *part.data, kind.fields);
        addRedfishFields(device, *part.data, redfishIdentity());
        const std::string name = cleanName(redfishText(*part.data, "Name"));
        device.name = nameFromModel(device, name.empty() ? kind.name : name);
    } else {
        device.type = u"Slot";
        device.name = kind.place;
        addRedfishUsage(device, *part.data);
        addRedfishFields(device, *part.data, SLOT_FIELDS);
    }
    noteHealth(*part.data, device);
    return m_recording.add(std::move(device));
}

void RedfishParts::addAll(const RedfishKind& kind, const std::vector<RedfishPart>& parts, std::size_t parent) {
    for (std::size_t number = 0; number < parts.size(); ++number) {
        const RedfishPart& part = parts[number];
        add(kind, isIdentity(part) ? RedfishPart{part.data, std::to_string(number)} : part, parent);
    }
}

void RedfishParts::noteHealth(const json::object& part, const DeviceRecord& device) {
    const std::string health = redfishText(part, "Status/Health");
    if (!health.empty() && health != "OK") {
        m_damage.add(DamageKind::PartNotHealthy, 0, device.hwLocator + ", " + health);
    }
}

void RedfishParts::prefixLocators(std::size_t from, const std::string& prefix) {
    for (std::size_t place = from; place < m_recording.size(); ++place) {
        m_recording.at(place).hwLocator.insert(0, prefix);
    }
}

}  // namespace vrx
