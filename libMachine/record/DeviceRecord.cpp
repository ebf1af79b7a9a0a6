#include "libMachine/record/DeviceRecord.h"

#include <algorithm>

#include "libCommon/values/Measurement.h"
#include "libCommon/values/Unit.h"
#include "libMachine/record/CleanText.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

void DeviceRecord::text(StringView key, std::string_view raw, Category category) {
    String clean = cleanText(raw);
    if (clean.isEmpty()) {
        return;
    }
    if (!isPlaceholder(clean)) {
        add(key, std::move(clean), category);
    } else if (category == Category::SysInfo() &&
               std::find(placeholders.begin(), placeholders.end(), key) == placeholders.end()) {
        placeholders.push_back(key);
    }
}

void DeviceRecord::number(StringView key, std::optional<std::uint64_t> number, Category category) {
    if (number) {
        properties.push_back({key, category, ValueImp(*number)});
    }
}

void DeviceRecord::flag(StringView key, bool value, Category category) {
    properties.push_back({key, category, ValueImp(value)});
}

void DeviceRecord::measure(StringView key, double number, StringView unit, Category category) {
    if (!(number > 0)) {
        return;
    }
    const std::optional<Unit> found = Unit::lookupByString(unit);
    VRX_ASSERT(found);
    properties.push_back({key, category, ValueImp(DiscreteMeasurement(found->type(), number, found->magnitude()))});
}

void DeviceRecord::reading(StringView key, double number, StringView unit) {
    const std::optional<Unit> found = Unit::lookupByString(unit);
    VRX_ASSERT(found);
    properties.push_back(
        {key, Category::Volatile(), ValueImp(NonDiscreteMeasurement(found->type(), number, found->magnitude()))});
}

void DeviceRecord::size(StringView key, std::uint64_t bytes, Category category) {
    static constexpr StringView UNITS[] = {u"B", u"KB", u"MB", u"GB", u"TB"};
    static constexpr double STEP = 1024;
    auto number = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (number >= STEP && unit + 1 < std::size(UNITS)) {
        number /= STEP;
        ++unit;
    }
    measure(key, number, UNITS[unit], category);
}

void DeviceRecord::add(StringView key, String value, Category category) {
    properties.push_back({key, category, ValueImp(std::move(value))});
}

bool DeviceRecord::has(StringView key) const noexcept {
    return std::any_of(properties.begin(), properties.end(),
                       [key](const PropertyRecord& property) { return property.key == key; });
}

void DeviceRecord::isAlso(StringView other) {
    const bool isBusOnly = type == u"UsbDevice" || type == u"PciDevice";
    if (CapabilityImp(other).isCapable(CapabilityImp(type))) {
        return;
    }
    if (isBusOnly) {
        capabilities.push_back(type);
    }
    if (isBusOnly || CapabilityImp(type).isCapable(CapabilityImp(other))) {
        type = other;
        std::erase(capabilities, type);
    } else if (std::find(capabilities.begin(), capabilities.end(), other) == capabilities.end()) {
        capabilities.push_back(other);
    }
}

std::string cleanName(std::string_view raw) {
    const String clean = cleanText(raw);
    return isPlaceholder(clean) ? std::string() : clean.toUtf8();
}

std::string nameFromModel(const DeviceRecord& device, std::string_view otherwise, StringView modelKey) {
    std::string vendor;
    std::string model;
    for (const PropertyRecord& property : device.properties) {
        if (property.key == property::VENDOR) {
            vendor = property.value.toString(false).toUtf8();
        } else if (property.key == modelKey) {
            model = property.value.toString(false).toUtf8();
        }
    }
    if (model.empty()) {
        return std::string(otherwise);
    }
    return vendor.empty() || model.starts_with(vendor) ? model : vendor + " " + model;
}

}  // namespace vrx
