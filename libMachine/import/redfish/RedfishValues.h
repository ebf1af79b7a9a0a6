#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "libMachine/record/DeviceRecord.h"

namespace vrx {

/// What stands at a path of member names in a resource ("Status/Health"; numbers are places in lists). Texts are empty
/// where there is none, or something else; a whole number counts as text too. Numbers may be written as texts.
std::string redfishText(const boost::json::object& resource, std::string_view path);
std::optional<double> redfishNumber(const boost::json::object& resource, std::string_view path);

/// What becomes of a value.
enum class RedfishValue : std::uint8_t {
    Text,
    SmallText,  ///< in small letters
    VolatileText,
    LinkState,  ///< Volatile, "LinkUp" as "up"
    Number,     ///< a whole one, hexadecimal where it starts with 0x
    Measure,    ///< in the field's unit
    Reading,    ///< Volatile, in the field's unit
    Bytes,
    Hexadecimal,  ///< "0x8086" as "8086"
    PcieSpeed,    ///< "Gen4" as 16 GT/s
    VolatilePcieSpeed,
};

/// A value of a resource and the property that it becomes. Of several with one key the first that says something
/// counts.
struct RedfishField {
    std::string_view path;
    StringView key;
    RedfishValue value = RedfishValue::Text;
    StringView unit = {};
};

void addRedfishFields(DeviceRecord& device, const boost::json::object& resource, std::span<const RedfishField> fields);

/// Who made a part, and which one it is: fields that all parts have alike.
std::span<const RedfishField> redfishIdentity() noexcept;

}  // namespace vrx
