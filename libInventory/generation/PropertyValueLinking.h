#pragma once

#include <boost/shared_ptr.hpp>

#include "libSystemState/Forward.h"

namespace vrx {

class XmlElement;

/// Writes the `value` children of a generated `property` element: exact patterns, or, where the filter defines a
/// tolerance for the device's type and the property's key, ranges of value ± tolerance percent. `filter` may be null.
void linkPropertyValue(XmlElement* propertyElement, const boost::shared_ptr<IDeviceImp>& device,
                       const IPropertyImp& property, SysinfoFilter* filter);

}  // namespace vrx
