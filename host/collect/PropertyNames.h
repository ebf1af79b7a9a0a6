#pragma once

#include "libCommon/text/String.h"

/// Every property key that a recording uses, once: what has the same meaning has the same key on every device.
/// docs/recorder.md says which device has which.
namespace vrx::host::property {

// Who made it, and which one it is
inline constexpr StringView VENDOR = u"Vendor";
inline constexpr StringView MODEL = u"Model";
inline constexpr StringView VERSION = u"Version";
inline constexpr StringView REVISION = u"Revision";
inline constexpr StringView FAMILY = u"Family";
inline constexpr StringView PART_NUMBER = u"PartNumber";
inline constexpr StringView SERIAL_NUMBER = u"SerialNumber";
inline constexpr StringView ASSET_TAG = u"AssetTag";
inline constexpr StringView SKU = u"SKU";
inline constexpr StringView UUID = u"UUID";
inline constexpr StringView WWN = u"WWN";
inline constexpr StringView FIRMWARE_VERSION = u"FirmwareVersion";
inline constexpr StringView RELEASE_DATE = u"ReleaseDate";

// Identifiers of PCI and USB: hexadecimal digits
inline constexpr StringView VENDOR_ID = u"VendorId";
inline constexpr StringView DEVICE_ID = u"DeviceId";
inline constexpr StringView SUBSYSTEM_VENDOR = u"SubsystemVendor";
inline constexpr StringView SUBSYSTEM_VENDOR_ID = u"SubsystemVendorId";
inline constexpr StringView SUBSYSTEM = u"Subsystem";
inline constexpr StringView SUBSYSTEM_ID = u"SubsystemId";
inline constexpr StringView CLASS = u"Class";
inline constexpr StringView CLASS_CODE = u"ClassCode";
inline constexpr StringView USB_VERSION = u"UsbVersion";

// Where it sits
inline constexpr StringView SLOT = u"Slot";
inline constexpr StringView BANK = u"Bank";
inline constexpr StringView NUMA_NODE = u"NumaNode";

// What it is like
inline constexpr StringView CHASSIS_TYPE = u"ChassisType";
inline constexpr StringView FORM_FACTOR = u"FormFactor";
inline constexpr StringView MEMORY_TYPE = u"MemoryType";
inline constexpr StringView CACHE_TYPE = u"CacheType";
inline constexpr StringView ERROR_CORRECTION = u"ErrorCorrection";
inline constexpr StringView TRANSPORT = u"Transport";
inline constexpr StringView ROTATIONAL = u"Rotational";
inline constexpr StringView REMOVABLE = u"Removable";
inline constexpr StringView VIRTUAL = u"Virtual";
inline constexpr StringView ADDRESS = u"Address";
inline constexpr StringView DRIVER = u"Driver";

// How much, how many, how fast
inline constexpr StringView SIZE = u"Size";
inline constexpr StringView INSTALLED_SIZE = u"InstalledSize";
inline constexpr StringView USABLE_SIZE = u"UsableSize";
inline constexpr StringView MAXIMUM_SIZE = u"MaximumSize";
inline constexpr StringView SECTOR_SIZE = u"SectorSize";
inline constexpr StringView LINE_SIZE = u"LineSize";
inline constexpr StringView ASSOCIATIVITY = u"Associativity";
inline constexpr StringView LEVEL = u"Level";
inline constexpr StringView SLOTS = u"Slots";
inline constexpr StringView RANKS = u"Ranks";
inline constexpr StringView DATA_WIDTH = u"DataWidth";
inline constexpr StringView TOTAL_WIDTH = u"TotalWidth";
inline constexpr StringView VOLTAGE = u"Voltage";
inline constexpr StringView SPEED = u"Speed";
inline constexpr StringView CONFIGURED_SPEED = u"ConfiguredSpeed";
inline constexpr StringView ROTATION_RATE = u"RotationRate";
inline constexpr StringView CORES = u"Cores";
inline constexpr StringView THREADS = u"Threads";
inline constexpr StringView MODEL_NUMBER = u"ModelNumber";
inline constexpr StringView STEPPING = u"Stepping";
inline constexpr StringView MICROCODE = u"Microcode";
inline constexpr StringView CLOCK = u"Clock";
inline constexpr StringView MAX_CLOCK = u"MaxClock";
inline constexpr StringView CURRENT_CLOCK = u"CurrentClock";
inline constexpr StringView MAX_LINK_SPEED = u"MaxLinkSpeed";
inline constexpr StringView MAX_LINK_WIDTH = u"MaxLinkWidth";

// What changes by itself
inline constexpr StringView LINK_SPEED = u"LinkSpeed";
inline constexpr StringView LINK_WIDTH = u"LinkWidth";
inline constexpr StringView LINK_STATE = u"LinkState";
inline constexpr StringView DUPLEX = u"Duplex";

}  // namespace vrx::host::property
