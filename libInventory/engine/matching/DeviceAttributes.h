#pragma once

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

/// What an attribute of a `device` element stands for.
enum class DeviceAttribute { Type, Name, OsLocator, HwLocator, Invalid };

/// The attribute of that name, without letter case.
DeviceAttribute deviceAttributeOf(StringView name) noexcept;

/// The attribute written `type`, else the first whose name equals it without letter case; empty when there is none.
StringView typeTextOf(const XmlElement& device);

}  // namespace vrx
