#pragma once

#include "libCommon/text/String.h"

/// Every property key that a recording uses, once: what has the same meaning has the same key on every device.
/// docs/recorder.md says which device has which.
///
///     device.findProperty(property::SERIAL_NUMBER);
namespace vrx::property {

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
inline constexpr StringView NODE_GUID = u"NodeGuid";
inline constexpr StringView FIRMWARE_VERSION = u"FirmwareVersion";
inline constexpr StringView RELEASE_DATE = u"ReleaseDate";
inline constexpr StringView CONTROLLER_REVISION = u"ControllerRevision";
inline constexpr StringView PLACEHOLDERS = u"Placeholders";
inline constexpr StringView MANUFACTURE_DATE = u"ManufactureDate";

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
inline constexpr StringView SLOT_TYPE = u"SlotType";
inline constexpr StringView SLOT_LENGTH = u"SlotLength";
inline constexpr StringView SOCKET_TYPE = u"SocketType";
inline constexpr StringView USAGE = u"Usage";
inline constexpr StringView NUMA_NODE = u"NumaNode";
inline constexpr StringView LABEL = u"Label";
inline constexpr StringView IO_PORT = u"IoPort";

// What it is like
inline constexpr StringView CHASSIS_TYPE = u"ChassisType";
inline constexpr StringView FORM_FACTOR = u"FormFactor";
inline constexpr StringView BOARD_TYPE = u"BoardType";
inline constexpr StringView MEMORY_TYPE = u"MemoryType";
inline constexpr StringView BUFFERING = u"Buffering";
inline constexpr StringView COOLING_TYPE = u"CoolingType";
inline constexpr StringView INTERFACE_TYPE = u"InterfaceType";
inline constexpr StringView IPMI_VERSION = u"IpmiVersion";
inline constexpr StringView CACHE_TYPE = u"CacheType";
inline constexpr StringView ERROR_CORRECTION = u"ErrorCorrection";
inline constexpr StringView TRANSPORT = u"Transport";
inline constexpr StringView ROTATIONAL = u"Rotational";
inline constexpr StringView REMOVABLE = u"Removable";
inline constexpr StringView VIRTUAL = u"Virtual";
inline constexpr StringView ADDRESS = u"Address";
inline constexpr StringView DRIVER = u"Driver";
inline constexpr StringView TECHNOLOGY = u"Technology";
inline constexpr StringView RAID_LEVEL = u"RaidLevel";
inline constexpr StringView NATIVE_MODE = u"NativeMode";
inline constexpr StringView PARTITION_TYPE = u"PartitionType";
inline constexpr StringView FILE_SYSTEM = u"FileSystem";
inline constexpr StringView FILE_SYSTEM_UUID = u"FileSystemUUID";

// How much, how many, how fast
inline constexpr StringView SIZE = u"Size";
inline constexpr StringView INSTALLED_SIZE = u"InstalledSize";
inline constexpr StringView USABLE_SIZE = u"UsableSize";
inline constexpr StringView MAXIMUM_SIZE = u"MaximumSize";
inline constexpr StringView SECTOR_SIZE = u"SectorSize";
inline constexpr StringView LINE_SIZE = u"LineSize";
inline constexpr StringView ASSOCIATIVITY = u"Associativity";
inline constexpr StringView LEVEL = u"Level";
inline constexpr StringView RACK_UNITS = u"RackUnits";
inline constexpr StringView SLOTS = u"Slots";
inline constexpr StringView RANKS = u"Ranks";
inline constexpr StringView DATA_WIDTH = u"DataWidth";
inline constexpr StringView TOTAL_WIDTH = u"TotalWidth";
inline constexpr StringView VOLTAGE = u"Voltage";
inline constexpr StringView MAX_POWER = u"MaxPower";
inline constexpr StringView NOMINAL_SPEED = u"NominalSpeed";
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
inline constexpr StringView SOCKET_MAX_CLOCK = u"SocketMaxClock";
inline constexpr StringView CURRENT_CLOCK = u"CurrentClock";
inline constexpr StringView MAX_LINK_SPEED = u"MaxLinkSpeed";
inline constexpr StringView MAX_LINK_WIDTH = u"MaxLinkWidth";
inline constexpr StringView SLOT_MAX_LINK_SPEED = u"SlotMaxLinkSpeed";
inline constexpr StringView SLOT_MAX_LINK_WIDTH = u"SlotMaxLinkWidth";
inline constexpr StringView LINK_WIDTH = u"LinkWidth";
inline constexpr StringView WIDTH = u"Width";
inline constexpr StringView HEIGHT = u"Height";
inline constexpr StringView PORTS = u"Ports";
inline constexpr StringView VIDEO_MEMORY = u"VideoMemory";
inline constexpr StringView DESIGN_CAPACITY = u"DesignCapacity";
inline constexpr StringView DESIGN_VOLTAGE = u"DesignVoltage";

// What changes by itself
inline constexpr StringView LINK_SPEED = u"LinkSpeed";
inline constexpr StringView LINK_STATE = u"LinkState";
inline constexpr StringView DUPLEX = u"Duplex";
inline constexpr StringView STATUS = u"Status";
inline constexpr StringView HEALTH = u"Health";
inline constexpr StringView ONLINE = u"Online";
inline constexpr StringView CHARGE = u"Charge";
inline constexpr StringView FULL_CAPACITY = u"FullCapacity";
inline constexpr StringView CYCLES = u"Cycles";
inline constexpr StringView TEMPERATURE = u"Temperature";
inline constexpr StringView CURRENT = u"Current";
inline constexpr StringView POWER = u"Power";

// The operating system
inline constexpr StringView KERNEL_RELEASE = u"KernelRelease";
inline constexpr StringView ARCHITECTURE = u"Architecture";
inline constexpr StringView HOST_NAME = u"HostName";

}  // namespace vrx::property
