#include "libSystemState/properties/PropertySpecImp.h"

#include <utility>

#include "libCommon/text/NumberText.h"

namespace vrx {

namespace {

/// The key's length stands before it, so that no key can look like a key with capabilities. Unknown capabilities equal
/// one another whatever their texts, so they are all written alike.
String guidOf(StringView key, PropertyCategoryImp category, DataTypeImp type, const CapabilityImp& capabilities) {
    const CapabilityImp& named = capabilities.isInvalid() ? CapabilityImp::INVALID() : capabilities;
    return concat(type.toString(), u"|", category.toString(), u"|", toText(std::uint64_t{key.size()}), u"|", key, u"|",
                  named.toString());
}

}  // namespace

PropertySpecImp::PropertySpecImp(String key, PropertyCategoryImp category, DataTypeImp type, CapabilityImp capabilities)
    : m_key(std::move(key)),
      m_guid(guidOf(m_key, category, type, capabilities)),
      m_capabilities(std::move(capabilities)),
      m_category(category),
      m_type(type) {}

}  // namespace vrx
