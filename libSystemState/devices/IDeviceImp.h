#pragma once

#include <boost/shared_ptr.hpp>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// One device. Name, locators and type never change once the device is in a store (the store keeps indexes of them).
///
///     if (const IPropertyImp* const size = device.findProperty(u"Size")) {
///         std::cout << size->value().toString(false).toUtf8() << '\n';
///     }
class VRX_EXPORT IDeviceImp {
public:
    virtual ~IDeviceImp() = default;

    /// A new device with copies of the properties and without children; the caller owns it.
    virtual IDeviceImp* clone() const = 0;

    /// Adds a property after the others. Of two properties with one key, `property` gives the first.
    virtual void addProperty(const boost::shared_ptr<IPropertyImp>& property) = 0;

    /// The display name.
    virtual const String& name() const = 0;

    /// Where the operating system finds it (a device file, an interface name).
    virtual const String& osLocator() const = 0;

    /// Where the hardware has it (a slot, a bus address).
    virtual const String& hwLocator() const = 0;

    /// The identifier that `StateManager::deviceByGuid` resolves; see DeviceImp::guid.
    virtual String guid() const = 0;

    /// The device's type together with the capabilities that it was given.
    virtual CapabilityImp capabilities() const = 0;

    virtual const CapabilityImp& type() const = 0;

    /// The top-level property with that key (exact); an empty pointer when there is none.
    virtual boost::shared_ptr<IPropertyImp> property(const String& key) const = 0;

    /// The properties that are in any of the categories, in the order in which they were added.
    virtual Array<boost::shared_ptr<IPropertyImp>> properties(const PropertyCategoryImp& categories) const = 0;

    /// The direct children, in the store's order.
    virtual Array<boost::shared_ptr<IDeviceImp>> children() const = 0;

    /// Adds a child; called by the store.
    virtual void addChild(const boost::shared_ptr<IDeviceImp>& child) = 0;

    virtual const String& description() const = 0;

    /// Type, name and guid in one line, for log lines.
    virtual String toString(unsigned indent = 0, bool verbose = false) const = 0;

    /// As `property`, without sharing ownership: null when there is none. The pointer lives as long as the device.
    virtual const IPropertyImp* findProperty(StringView key) const = 0;

    /// What a recording says of the properties, as long as these have not been made of it; else null.
    virtual const RecordedProperties* recordedProperties() const noexcept { return nullptr; }
};

}  // namespace vrx
