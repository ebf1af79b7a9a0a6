#pragma once

#include "libCommon/text/String.h"

/// Every element and attribute name of a SysInfo recording, once. Unlike those of scripts, they are exact.
namespace vrx::sysInfo {

inline constexpr StringView SYS_INFO = u"SysInfo";
inline constexpr StringView DEVICE = u"Device";
inline constexpr StringView DEVICE_LOWER = u"device";  ///< read as well
inline constexpr StringView CAPABILITY = u"Capability";
inline constexpr StringView PROPERTY = u"property";
inline constexpr StringView PROPERTY_UPPER = u"Property";  ///< read as well
inline constexpr StringView VALUE_UPPER = u"Value";        ///< read as well: an entry of a value, as its text

inline constexpr StringView UNREAD_SOURCE = u"UnreadSource";  ///< beside the devices: what could not be read

inline constexpr StringView SOURCE = u"source";
inline constexpr StringView REASON = u"reason";
inline constexpr StringView TYPE = u"type";
inline constexpr StringView NAME = u"name";
inline constexpr StringView HW_LOCATOR = u"hwLocator";
inline constexpr StringView OS_LOCATOR = u"osLocator";
inline constexpr StringView KEY = u"key";
inline constexpr StringView VALUE = u"value";  ///< also the element that holds an entry of a value in it
inline constexpr StringView UNITS = u"units";

// The elements that say the same as an attribute.
inline constexpr StringView TYPE_ITEM = u"DeviceType";
inline constexpr StringView NAME_ITEM = u"Name";
inline constexpr StringView HW_LOCATOR_ITEM = u"HW_Locator";
inline constexpr StringView OS_LOCATOR_ITEM = u"OS_Locator";
inline constexpr StringView KEY_ITEM = u"Key";

}  // namespace vrx::sysInfo
