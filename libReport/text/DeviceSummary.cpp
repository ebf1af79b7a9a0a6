/// A row of the table says which properties matter for a type and for every type below it; the first row that fits a
/// device and of which the device has something decides. Properties are separated by blanks, groups of them by commas.
/// The last rows fit every type, for recordings that other programs made or that somebody wrote by hand.

#include "libReport/text/DeviceSummary.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/PrintableText.h"
#include "libReport/text/TextPieces.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr std::size_t LONGEST_VALUE = 48;
constexpr std::size_t SHOWN_OF_UNKNOWN = 2;

struct Piece {
    StringView key;
    StringView otherwise = {};   ///< the key to take when the device does not have the first
    const char* noun = nullptr;  ///< counted by the value; what is no count is left out then
    bool opensGroup = false;
};

constexpr Piece group(StringView key, StringView otherwise = {}, const char* noun = nullptr) {
    return {key, otherwise, noun, true};
}

using namespace property;

constexpr Piece SYSTEM[] = {{VENDOR}, {MODEL}, group(SERIAL_NUMBER)};
constexpr Piece CHASSIS[] = {{VENDOR}, {MODEL}, group(CHASSIS_TYPE)};
constexpr Piece BOARD[] = {{VENDOR}, {MODEL}, {VERSION}};
constexpr Piece FIRMWARE[] = {{VENDOR}, {VERSION, FIRMWARE_VERSION}, group(RELEASE_DATE)};
constexpr Piece PROCESSOR[] = {{CORES, {}, "core"}, group(THREADS, {}, "thread"), group(CLOCK, MAX_CLOCK)};
constexpr Piece CORE[] = {{THREADS, {}, "thread"}};
constexpr Piece CACHE[] = {{SIZE}};
constexpr Piece MODULE[] = {{SIZE}, {MEMORY_TYPE}, {CONFIGURED_SPEED, SPEED}, group(VENDOR), {PART_NUMBER, MODEL}};
constexpr Piece ARRAY[] = {{SLOTS, {}, "slot"}, group(MAXIMUM_SIZE), group(ERROR_CORRECTION)};
constexpr Piece MEMORY[] = {{SIZE, INSTALLED_SIZE}};
constexpr Piece STORAGE[] = {{SIZE}, {ROTATION_RATE}, {TRANSPORT}, group(VENDOR), {MODEL}, group(SERIAL_NUMBER)};
constexpr Piece NETWORK[] = {{SPEED, u"MaximumSpeed"}, group(ADDRESS), group(VENDOR), {MODEL}};
constexpr Piece VOLUME[] = {{SIZE}, {FILE_SYSTEM, PARTITION_TYPE}, group(LABEL)};
constexpr Piece DISPLAY[] = {{VIDEO_MEMORY, u"MemorySize"}, group(VENDOR), {MODEL}};
constexpr Piece MONITOR[] = {{NATIVE_MODE}, group(VENDOR), {MODEL}, group(SERIAL_NUMBER)};
constexpr Piece FAN[] = {{u"Reading", SPEED}, {NOMINAL_SPEED}};
constexpr Piece TEMPERATURE_SENSOR[] = {{u"Reading", TEMPERATURE}};
constexpr Piece VOLTAGE_SENSOR[] = {{u"Reading", VOLTAGE}};
constexpr Piece CURRENT_SENSOR[] = {{u"Reading", CURRENT}};
constexpr Piece POWER_SENSOR[] = {{u"Reading", POWER}};
constexpr Piece BATTERY[] = {{DESIGN_CAPACITY}, {TECHNOLOGY}, group(VENDOR), {MODEL}, group(SERIAL_NUMBER)};
constexpr Piece SUPPLY[] = {{MAX_POWER, u"MaximumPower"}, group(VENDOR), {MODEL}, group(SERIAL_NUMBER)};
constexpr Piece SOFTWARE[] = {{VERSION}, {KERNEL_RELEASE}, {ARCHITECTURE}};
constexpr Piece SLOT_PIECES[] = {{SLOT_TYPE, FORM_FACTOR}, group(USAGE)};
constexpr Piece GENERAL[] = {{SIZE, u"MemorySize"}, {SPEED, MAX_LINK_SPEED}, group(VENDOR), {MODEL}, {VERSION}};

struct Row {
    StringView type;  ///< empty for every type
    std::span<const Piece> pieces;
};

constexpr Row TABLE[] = {
    {u"System", SYSTEM},
    {u"Chassis", CHASSIS},
    {u"Motherboard", BOARD},
    {u"Firmware", FIRMWARE},
    {u"ProcessorCore", CORE},
    {u"Processor", PROCESSOR},
    {u"Cache", CACHE},
    {u"MemoryModule", MODULE},
    {u"MemoryArray", ARRAY},
    {u"Memory", MEMORY},
    {u"Storage", STORAGE},
    {u"Volume", VOLUME},
    {u"Network", NETWORK},
    {u"Display", DISPLAY},
    {u"Monitor", MONITOR},
    {u"Cooling", FAN},
    {u"FanSensor", FAN},
    {u"TemperatureSensor", TEMPERATURE_SENSOR},
    {u"VoltageSensor", VOLTAGE_SENSOR},
    {u"CurrentSensor", CURRENT_SENSOR},
    {u"PowerSensor", POWER_SENSOR},
    {u"Battery", BATTERY},
    {u"Power", SUPPLY},
    {u"OperatingSystem", SOFTWARE},
    {u"Slot", SLOT_PIECES},
    {{}, GENERAL},
};

/// The types of the table, which cost a look-up by name each.
const std::vector<CapabilityImp>& tableTypes() {
    static const std::vector<CapabilityImp> types = [] {
        std::vector<CapabilityImp> made;
        for (const Row& row : TABLE) {
            made.push_back(row.type.empty() ? CapabilityImp::ALL() : CapabilityImp(row.type));
        }
        return made;
    }();
    return types;
}

bool holds(const String& text, StringView part) {
    return foldCase(text).view().find(foldCase(part)) != StringView::npos;
}

bool isInName(const IDeviceImp& device, StringView text) { return holds(device.name(), text); }

/// A measure to two decimals, which people read more easily: "465.7617416381836 GB" as "465.76 GB".
std::string roundedMeasure(const std::string& text) {
    static constexpr std::size_t DECIMALS = 2;
    const std::size_t blank = text.find(' ');
    const std::size_t point = text.find('.');
    const bool isLong = point != std::string::npos && blank != std::string::npos && blank > point + DECIMALS + 1;
    if (!isLong || text.find_first_not_of("0123456789.") != blank) {
        return text;
    }
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + blank, number);
    return error == std::errc() && end == text.data() + blank
               ? fmt::format("{}", std::round(number * 100) / 100) + text.substr(blank)
               : text;
}

/// The value as it is shown; empty when there is none, or nothing that fits in a line.
std::string valueText(const IDeviceImp& device, StringView key) {
    const IPropertyImp* const property = key.empty() ? nullptr : device.findProperty(key);
    if (property == nullptr) {
        return {};
    }
    const String text = property->value().toString(true);
    return text.isEmpty() || text.size() > LONGEST_VALUE ? std::string() : roundedMeasure(printable(text));
}

std::string pieceText(const IDeviceImp& device, const Piece& piece) {
    std::string text = valueText(device, piece.key);
    if (text.empty()) {
        text = valueText(device, piece.otherwise);
    }
    if (text.empty() || piece.noun == nullptr) {
        return text.empty() || isInName(device, String::UTF8Decode(text)) ? std::string() : text;
    }
    const std::optional<std::int64_t> count = parseInteger(String::UTF8Decode(text));
    return count && *count >= 0 ? counted(static_cast<std::size_t>(*count), piece.noun) : std::string();
}

std::string rowText(const IDeviceImp& device, std::span<const Piece> pieces) {
    std::string text;
    bool opensGroup = false;
    for (const Piece& piece : pieces) {
        opensGroup = opensGroup || piece.opensGroup;
        const std::string word = pieceText(device, piece);
        if (!word.empty()) {
            text += (text.empty() ? "" : opensGroup ? ", " : " ") + word;
            opensGroup = false;
        }
    }
    return text;
}

/// The first short properties, with their keys, of which the line says nothing yet; a flag says little without the
/// rest.
std::string anyProperties(const IDeviceImp& device) {
    std::string text;
    std::size_t shown = 0;
    for (const auto& property : device.properties(PropertyCategoryImp::SysInfo())) {
        const std::string value = valueText(device, property->key());
        const bool isFlag = value == "true" || value == "false";
        const String plain = String::UTF8Decode(value);
        const bool isSaid = isInName(device, plain) || holds(device.hwLocator(), plain);
        if (!value.empty() && !isFlag && !isSaid && shown < SHOWN_OF_UNKNOWN) {
            text += (text.empty() ? "" : ", ") + printable(property->key()) + " " + value;
            ++shown;
        }
    }
    return text;
}

/// What a part says of itself that nobody wants to overlook; empty when all is well.
std::string healthText(const IDeviceImp& device) {
    const std::string health = valueText(device, HEALTH);
    return health.empty() || health == "OK" ? std::string() : "health " + health;
}

std::string mainProperties(const IDeviceImp& device) {
    const std::vector<CapabilityImp>& types = tableTypes();
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i].isCapable(device.type())) {
            if (std::string text = rowText(device, TABLE[i].pieces); !text.empty()) {
                return text;
            }
        }
    }
    return anyProperties(device);
}

}  // namespace

std::string deviceSummary(const IDeviceImp& device) {
    const std::string main = mainProperties(device);
    const std::string health = healthText(device);
    return main + (main.empty() || health.empty() ? "" : ", ") + health;
}

std::string deviceTitle(const IDeviceImp& device) {
    return deviceTitle(
        Inventory::DeviceSpec(device.name(), device.type().toString(), device.hwLocator(), device.osLocator()));
}

std::string deviceTitle(const Inventory::DeviceSpec& device) {
    std::string title = printable(device.type);
    if (!device.name.isEmpty()) {
        title += " \"" + printable(device.name) + "\"";
    }
    const String& locator = device.hwLocator.isEmpty() ? device.osLocator : device.hwLocator;
    return locator.isEmpty() ? title : title + " (" + printable(locator) + ")";
}

}  // namespace vrx
