/// A chassis: power supplies, fans, batteries, sensors, network adapters, slots. Newer
/// services have a resource for each, older ones lists in two; the newer form counts where a service has both.

#include <algorithm>
#include <iterator>

#include "libMachine/import/redfish/RedfishParts.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

namespace json = boost::json;

constexpr RedfishField CHASSIS_FIELDS[] = {{"ChassisType", property::CHASSIS_TYPE}};
constexpr RedfishKind CHASSIS{u"Chassis", "chassis", "Chassis", "Chassis, absent", CHASSIS_FIELDS};

constexpr RedfishField SUPPLY[] = {{"PowerCapacityWatts", property::MAX_POWER, RedfishValue::Measure, u"W"}};
constexpr RedfishKind POWER_SUPPLIES{u"PowerSupply", "psu", "Power supply", "Power supply bay", SUPPLY};

constexpr RedfishField BATTERY[] = {
    {"CapacityRatedWattHours", property::DESIGN_CAPACITY, RedfishValue::Measure, u"Wh"}};
constexpr RedfishKind BATTERIES{u"Battery", "battery", "Battery", "Battery bay", BATTERY};

constexpr RedfishField FAN[] = {{"SpeedPercent/SpeedRPM", property::SPEED, RedfishValue::Reading, u"RPM"}};
constexpr RedfishKind FANS{u"Fan", "fan", "Fan", "Fan place", FAN};

constexpr RedfishKind ADAPTERS{u"Network", "nic", "Network adapter", "Network adapter place"};

constexpr RedfishField MANAGER_FIELDS[] = {{"ManagerType", property::INTERFACE_TYPE}};
constexpr RedfishKind MANAGERS{u"ManagementController", "bmc", "Management controller", "Management controller, absent",
                               MANAGER_FIELDS};

/// What a sensor reads, by the unit that it says or the older form's member.
struct SensorKindOf {
    std::string_view unit;
    std::string_view reading;
    StringView type;
    std::string_view locator;
    StringView key;
    StringView measure;
};

constexpr SensorKindOf SENSORS[] = {
    {"Cel", "ReadingCelsius", u"TemperatureSensor", "temp", property::TEMPERATURE, u"degC"},
    {"V", "ReadingVolts", u"VoltageSensor", "in", property::VOLTAGE, u"V"},
    {"A", "ReadingAmps", u"CurrentSensor", "curr", property::CURRENT, u"A"},
    {"W", "ReadingWatts", u"PowerSensor", "power", property::POWER, u"W"},
    {"RPM", "", u"FanSensor", "fan", property::SPEED, u"RPM"},
    {"{rev}/min", "", u"FanSensor", "fan", property::SPEED, u"RPM"},
};

constexpr SensorKindOf OTHER_SENSOR{"", "", u"Sensor", "sensor", {}, {}};

const SensorKindOf& sensorKind(const json::object& sensor) {
    const std::string unit = redfishText(sensor, "ReadingUnits");
    const auto* const kind = std::ranges::find_if(SENSORS, [&](const SensorKindOf& row) {
        return row.unit == unit || (!row.reading.empty() && sensor.contains(row.reading));
    });
    return kind == std::end(SENSORS) ? OTHER_SENSOR : *kind;
}

/// A sensor that is switched off is none: there is nothing to put into its place.
void addSensors(RedfishParts& parts, const std::vector<RedfishPart>& sensors, std::size_t above) {
    for (const RedfishPart& sensor : sensors) {
        if (!isRedfishPresent(*sensor.data)) {
            continue;
        }
        const SensorKindOf& row = sensorKind(*sensor.data);
        const RedfishField fields[] = {{"Reading", row.key, RedfishValue::Reading, row.measure},
                                       {row.reading, row.key, RedfishValue::Reading, row.measure}};
        const std::string locator = "sensor/" + std::string(row.locator);
        RedfishKind kind{row.type, locator, "Sensor", "Sensor"};
        kind.fields = row.key.empty() ? std::span<const RedfishField>() : fields;
        parts.add(kind, sensor, above);
    }
}

/// The parts that a resource of the chassis holds, in the newer form or else in the older.
std::vector<RedfishPart> partsOf(RedfishTree& tree, const json::object& chassis, std::string_view newer,
                                 std::string_view older, std::string_view name) {
    for (const std::string_view holder : {newer, older}) {
        const json::object* const resource = chassis.contains(holder) ? tree.follow(chassis, holder) : nullptr;
        std::vector<RedfishPart> found =
            resource == nullptr ? std::vector<RedfishPart>() : tree.members(*resource, name);
        if (!found.empty()) {
            return found;
        }
    }
    return {};
}

void addOlderSensors(RedfishParts& parts, const json::object& chassis, std::size_t above) {
    if (const json::object* const thermal = parts.tree().follow(chassis, "Thermal")) {
        addSensors(parts, parts.tree().members(*thermal, "Temperatures"), above);
    }
    if (const json::object* const power = parts.tree().follow(chassis, "Power")) {
        addSensors(parts, parts.tree().members(*power, "Voltages"), above);
    }
}

void addAdapters(RedfishParts& parts, const json::object& chassis, std::size_t above) {
    static constexpr RedfishField FIRMWARE[] = {
        {"Controllers/0/FirmwarePackageVersion", property::FIRMWARE_VERSION},
        {"Controllers/0/PCIeInterface/LanesInUse", property::LINK_WIDTH, RedfishValue::Number},
        {"Controllers/0/PCIeInterface/MaxLanes", property::MAX_LINK_WIDTH, RedfishValue::Number},
    };
    RedfishKind kind = ADAPTERS;
    kind.fields = FIRMWARE;
    parts.addAll(kind, parts.tree().members(chassis, "NetworkAdapters"), above);
}

/// A slot that holds something is told by what it holds.
void addSlots(RedfishParts& parts, const json::object& chassis, std::size_t above) {
    const json::object* const slots = parts.tree().follow(chassis, "PCIeSlots");
    const std::vector<RedfishPart> all =
        slots == nullptr ? std::vector<RedfishPart>() : parts.tree().members(*slots, "Slots");
    for (std::size_t number = 0; number < all.size(); ++number) {
        const std::string label = redfishText(*all[number].data, "Location/PartLocation/ServiceLabel");
        if (!isRedfishPresent(*all[number].data)) {
            const RedfishKind kind{u"Slot", "slot", "Slot", "Expansion slot"};
            parts.add(kind, {all[number].data, label.empty() ? std::to_string(number) : label}, above);
        }
    }
}

/// The first of its kind has no number: most machines have one.
void dropId(RedfishParts& parts, std::size_t place, std::string_view locator) {
    if (place != Recording::NONE) {
        parts.recording().at(place).hwLocator = locator;
    }
}

}  // namespace

void addRedfishChassis(RedfishParts& parts, const RedfishPart& chassis, bool isFirst, std::size_t root) {
    const std::size_t place = parts.add(CHASSIS, chassis, root);
    if (place == Recording::NONE) {
        return;
    }
    if (isFirst) {
        dropId(parts, place, "chassis");
    }
    RedfishTree& tree = parts.tree();
    const json::object& data = *chassis.data;
    parts.addAll(POWER_SUPPLIES, partsOf(tree, data, "PowerSubsystem", "Power", "PowerSupplies"), root);
    parts.addAll(BATTERIES, partsOf(tree, data, "PowerSubsystem", "Power", "Batteries"), root);
    parts.addAll(FANS, partsOf(tree, data, "ThermalSubsystem", "Thermal", "Fans"), root);
    const std::vector<RedfishPart> sensors = tree.members(data, "Sensors");
    addSensors(parts, sensors, root);
    if (sensors.empty()) {
        addOlderSensors(parts, data, root);
    }
    addAdapters(parts, data, root);
    addRedfishPcie(parts, data, root);
    addSlots(parts, data, root);
    if (!isFirst) {
        parts.prefixLocators(place + 1, "chassis:" + chassis.id + "/");
    }
}

void addRedfishManager(RedfishParts& parts, const RedfishPart& manager, bool isFirst, std::size_t root) {
    const std::size_t place = parts.add(MANAGERS, manager, root);
    if (place == Recording::NONE) {
        return;
    }
    if (isFirst) {
        dropId(parts, place, "bmc");
    }
    const std::vector<RedfishPart> interfaces = parts.tree().members(*manager.data, "EthernetInterfaces");
    if (!interfaces.empty()) {
        static constexpr RedfishField ADDRESS[] = {{"PermanentMACAddress", property::ADDRESS, RedfishValue::SmallText},
                                                   {"MACAddress", property::ADDRESS, RedfishValue::SmallText}};
        addRedfishFields(parts.recording().at(place), *interfaces.front().data, ADDRESS);
    }
}

}  // namespace vrx
