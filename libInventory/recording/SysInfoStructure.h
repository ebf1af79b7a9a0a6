#pragma once

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"

/// Which elements of a SysInfo document mean something, and which only seem to.
namespace vrx::sysInfo {

bool isDevice(StringView elementName) noexcept;
bool isProperty(StringView elementName) noexcept;

/// The first device of the list that is read under an element; null when there is none.
XmlElement* firstDeviceOf(XmlElement& parent);

/// The first property that is read under an element; null when there is none.
XmlElement* firstPropertyOf(XmlElement& parent);

/// Whether an element that is no device may be meant for one: it is called so but for letter case or a slip, or it has
/// a device's locator. Requires: its name is none of a device.
bool looksLikeDevice(const XmlElement& element);

}  // namespace vrx::sysInfo
