#include "libMachine/import/redfish/RedfishValues.h"

#include <fmt/format.h>

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>
#include <cmath>

#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"

namespace vrx {

namespace {

namespace json = boost::json;
using Category = PropertyCategoryImp;

const json::value* valueIn(const json::value& outer, std::string_view step) {
    if (const json::object* const object = outer.if_object()) {
        return object->if_contains(step);
    }
    const json::array* const list = outer.if_array();
    const std::optional<std::uint64_t> place = parseNumber(step);
    return list == nullptr || !place || *place >= list->size() ? nullptr : &(*list)[static_cast<std::size_t>(*place)];
}

/// Null when there is none.
const json::value* valueAt(const json::object& resource, std::string_view path) {
    std::size_t end = path.find('/');
    const json::value* value = resource.if_contains(path.substr(0, end));
    while (value != nullptr && end != std::string_view::npos) {
        path.remove_prefix(end + 1);
        end = path.find('/');
        value = valueIn(*value, path.substr(0, end));
    }
    return value;
}

/// "0x8086", "8086h" and "8086" are the same; as many digits as identifiers have.
std::string hexadecimal(const std::string& text) {
    std::string digits = smallLetters(text.starts_with("0x") || text.starts_with("0X") ? text.substr(2) : text);
    if (digits.ends_with('h')) {
        digits.pop_back();
    }
    const std::optional<std::uint32_t> number = parseHex(digits);
    return number ? fmt::format("{:0{}x}", *number, digits.size() > 4 ? 6 : 4) : std::string();
}

/// Of a generation of PCI Express, in GT/s; 0 for another text.
double pcieSpeed(std::string_view text) {
    static constexpr double SPEEDS[] = {2.5, 5, 8, 16, 32, 64};
    const std::size_t generation =
        text.size() == 4 && text.starts_with("Gen") ? static_cast<std::size_t>(text[3] - '1') : 99;
    return generation < std::size(SPEEDS) ? SPEEDS[generation] : 0;
}

std::optional<std::uint64_t> wholeNumber(const json::object& resource, std::string_view path) {
    const std::optional<double> number = redfishNumber(resource, path);
    static constexpr double LARGEST = 1e18;
    if (!number || *number < 0 || *number > LARGEST || std::floor(*number) != *number) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(*number);
}

std::string linkState(const std::string& text) {
    return smallLetters(text.starts_with("Link") ? text.substr(4) : text);
}

void addRedfishField(DeviceRecord& device, const json::object& resource, const RedfishField& field) {
    const auto text = [&] {
        return redfishText(resource, field.path);
    };
    const auto number = [&] {
        return redfishNumber(resource, field.path).value_or(0);
    };
    switch (field.value) {
        case RedfishValue::Text: device.text(field.key, text()); break;
        case RedfishValue::SmallText: device.text(field.key, smallLetters(text())); break;
        case RedfishValue::VolatileText: device.text(field.key, text(), Category::Volatile()); break;
        case RedfishValue::LinkState: device.text(field.key, linkState(text()), Category::Volatile()); break;
        case RedfishValue::Number: device.number(field.key, wholeNumber(resource, field.path)); break;
        case RedfishValue::Measure: device.measure(field.key, number(), field.unit); break;
        case RedfishValue::Reading:
            if (const std::optional<double> reading = redfishNumber(resource, field.path)) {
                device.reading(field.key, *reading, field.unit);
            }
            break;
        case RedfishValue::Bytes: device.size(field.key, wholeNumber(resource, field.path).value_or(0)); break;
        case RedfishValue::Hexadecimal: device.text(field.key, hexadecimal(text())); break;
        case RedfishValue::PcieSpeed: device.measure(field.key, pcieSpeed(text()), field.unit); break;
        case RedfishValue::VolatilePcieSpeed:
            device.measure(field.key, pcieSpeed(text()), field.unit, Category::Volatile());
            break;
    }
}

}  // namespace

std::string redfishText(const json::object& resource, std::string_view path) {
    const json::value* const value = valueAt(resource, path);
    if (value != nullptr && value->is_string()) {
        return {value->get_string().begin(), value->get_string().end()};
    }
    if (value != nullptr && (value->is_int64() || value->is_uint64())) {
        return value->is_int64() ? std::to_string(value->get_int64()) : std::to_string(value->get_uint64());
    }
    return {};
}

std::optional<double> redfishNumber(const json::object& resource, std::string_view path) {
    const json::value* const value = valueAt(resource, path);
    if (value != nullptr && value->is_number()) {
        return value->to_number<double>();
    }
    const std::optional<std::uint64_t> number = parseNumber(redfishText(resource, path));
    return number ? std::optional(static_cast<double>(*number)) : std::nullopt;
}

void addRedfishFields(DeviceRecord& device, const json::object& resource, std::span<const RedfishField> fields) {
    for (const RedfishField& field : fields) {
        if (!device.has(field.key)) {
            addRedfishField(device, resource, field);
        }
    }
}

std::span<const RedfishField> redfishIdentity() noexcept {
    static constexpr RedfishField FIELDS[] = {
        {"Manufacturer", property::VENDOR},
        {"Model", property::MODEL},
        {"PartNumber", property::PART_NUMBER},
        {"SKU", property::SKU},
        {"SerialNumber", property::SERIAL_NUMBER},
        {"AssetTag", property::ASSET_TAG},
        {"FirmwareVersion", property::FIRMWARE_VERSION},
        {"UUID", property::UUID, RedfishValue::SmallText},
        {"Status/Health", property::HEALTH, RedfishValue::VolatileText},
    };
    return FIELDS;
}

}  // namespace vrx
