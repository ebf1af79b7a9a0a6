#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <utility>

#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/properties/PropertyImp.h"

namespace vrx::test {

inline boost::shared_ptr<IDeviceImp> makeDevice(const CapabilityImp& type, const String& name = u"",
                                                const String& hwLocator = u"", const String& osLocator = u"") {
    return DeviceImp::createGeneric(type, CapabilityImp(), 0, name, u"desc", osLocator, hwLocator);
}

inline boost::shared_ptr<IDeviceImp> makeDevice(StringView type, const String& name = u"",
                                                const String& hwLocator = u"", const String& osLocator = u"") {
    return makeDevice(CapabilityImp(type), name, hwLocator, osLocator);
}

inline boost::shared_ptr<PropertyImp> makeProperty(const String& key, const String& value,
                                                   PropertyCategoryImp category = PropertyCategoryImp::SysInfo()) {
    const auto spec =
        boost::make_shared<PropertySpecImp>(key, category, DataTypeImp(DataTypeImp::STRING), CapabilityImp::ALL());
    return boost::make_shared<PropertyImp>(spec, ValueImp(value));
}

/// Texts joined with one blank, as UTF-8: short to compare, readable in a failure.
template <typename Items, typename TextOf>
std::string joined(const Items& items, const TextOf& textOf) {
    std::string all;
    for (const auto& item : items) {
        all += (all.empty() ? "" : " ") + textOf(item).toUtf8();
    }
    return all;
}

inline std::string namesOf(const Array<boost::shared_ptr<IDeviceImp>>& devices) {
    return joined(devices, [](const auto& device) { return device->name(); });
}

inline std::string keysOf(const Array<boost::shared_ptr<IPropertyImp>>& properties) {
    return joined(properties, [](const auto& property) { return property->key(); });
}

}  // namespace vrx::test
