#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// One property of a device: a key, a type and a value, and possibly child properties, which are properties of the
/// same device that the device resolves by key.
///
///     for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
///         show(property->key(), property->value().toString(false));
///     }
class VRX_EXPORT IPropertyImp {
public:
    virtual ~IPropertyImp() = default;

    /// A new copy; the caller owns it.
    virtual IPropertyImp* clone() const = 0;

    virtual IPropertyImp& setValue(const ValueImp& value) = 0;
    virtual IPropertyImp& setPartOfGroup(bool partOfGroup) = 0;
    virtual IPropertyImp& setWillBeDiscoveredLater() = 0;

    /// Re-points the property at another specification, looked up by guid in `StateManager::instance()`; the property
    /// keeps its specification when there is none of that guid. Requires: the property is in no device yet, unless the
    /// key stays the same (devices keep indexes of keys).
    virtual IPropertyImp& updateSpecGuid(const String& guid) = 0;

    /// Adds a child property's key; false when it is there already or is this property's own.
    virtual bool addChild(const IPropertyImp& child) = 0;

    /// The name that inventory scripts use in `property` elements.
    virtual const String& key() const = 0;

    /// The type of its specification (the value carries its own).
    virtual const DataTypeImp& type() const = 0;
    virtual const String& moduleGuid() const = 0;
    virtual String englishName() const = 0;
    virtual const String& localizedName() const = 0;
    virtual const String& localizedDescription() const = 0;
    virtual const PropertyCategoryImp& category() const = 0;
    virtual const CapabilityImp& capabilities() const = 0;
    virtual const ValueImp& value() const = 0;
    virtual bool partOfGroup() const = 0;
    virtual bool willBeDiscoveredLater() const = 0;

    /// Whether it has no child properties.
    virtual bool isLeaf() const = 0;
    virtual const Array<String>& getChildrenKeys() const = 0;
    virtual void clearChildrenKeys() = 0;
    virtual std::uint32_t childrenCount() const = 0;

    /// The child properties, resolved through the device that owns this property; keys that it lacks are left out.
    virtual Array<boost::shared_ptr<IPropertyImp>> children(const IDeviceImp& device) const = 0;
    virtual bool removeChild(const String& key) = 0;

    /// "key = value", after `indent` times four blanks; the second argument (verbosity) changes nothing.
    virtual String toString(unsigned indent, int verbosity) const = 0;

    /// The same with the child properties below it, one a line.
    virtual String toStringTree(const IDeviceImp& device, unsigned indent, int verbosity) const = 0;

    /// The property specification registered in that store under this property's guid; empty when there is none.
    virtual boost::shared_ptr<PropertySpecImp> spec(const StateManager& store) const = 0;
    virtual boost::shared_ptr<PropertySpecImp> spec() const = 0;
    virtual const String& specGuid() const = 0;
};

}  // namespace vrx
