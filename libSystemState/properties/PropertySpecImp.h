#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/DataTypeImp.h"

namespace vrx {

/// What a property is, apart from its value: shared by all properties of the same kind.
///
///     const auto size = boost::make_shared<PropertySpecImp>(u"Size", category, DataTypeImp::STRING, capabilities);
///     device.addProperty(boost::make_shared<PropertyImp>(size, ValueImp(u"34359738368")));
class VRX_EXPORT PropertySpecImp {
public:
    PropertySpecImp(String key, PropertyCategoryImp category, DataTypeImp type, CapabilityImp capabilities);

    const String& key() const noexcept { return m_key; }
    const PropertyCategoryImp& category() const noexcept { return m_category; }
    const DataTypeImp& type() const noexcept { return m_type; }
    const CapabilityImp& capabilities() const noexcept { return m_capabilities; }

    /// The same for two specifications with equal key, category, type and capabilities.
    const String& guid() const noexcept { return m_guid; }

private:
    String m_key;
    String m_guid;
    CapabilityImp m_capabilities;
    PropertyCategoryImp m_category;
    DataTypeImp m_type;
};

}  // namespace vrx
