#include "libMachine/collect/SourceTable.h"

#include "libMachine/collect/CollectContext.h"

namespace vrx {

namespace {

constexpr Source SOURCES[] = {
    {"system", "the machine as a whole", collectSystem, {u"System"}, true, true},
    {"board", "board, chassis and BIOS", collectBoard, {u"Motherboard", u"Chassis", u"Firmware"}, false, true},
    {"processor",
     "processors, their cores and caches",
     collectProcessors,
     {u"Processor", u"ProcessorCore", u"Cache", u"Slot"},
     false,
     true},
    {"memory",
     "memory, its modules and empty slots",
     collectMemory,
     {u"Memory", u"MemoryModule", u"MemoryArray", u"Slot"},
     false,
     true},
    {"pci",
     "PCI devices",
     collectPci,
     {u"PciDevice", u"Bus", u"Network", u"StorageController", u"MemoryController", u"Display", u"Multimedia",
      u"Coprocessor", u"Security", u"Bluetooth"},
     true},
    {"usb",
     "USB hubs and devices",
     collectUsb,
     {u"UsbDevice", u"Bus", u"Input", u"Multimedia", u"Network", u"Bluetooth", u"Modem", u"Security", u"Printer"},
     true},
    {"storage", "disks and other drives", collectStorage, {u"Storage"}, true},
    {"raid",
     "what RAID, SAS and Fibre Channel controllers say of themselves",
     collectStorageControllers,
     {u"StorageController", u"FibreChannel"}},
    {"partitions", "partitions of disks", collectPartitions, {u"Volume"}},
    {"network", "network adapters", collectNetwork, {u"Network"}},
    {"firmware",
     "slots, power supplies, batteries and other devices that only the firmware's table tells of",
     collectFirmwareDevices,
     {u"Slot", u"Power", u"Cooling", u"ManagementController", u"Security"},
     false,
     true},
    {"graphics", "graphics adapters and monitors", collectGraphics, {u"Display", u"Monitor"}},
    {"sound", "sound cards and their codecs", collectSound, {u"Multimedia"}},
    {"cameras", "cameras and picture sources", collectCameras, {u"Multimedia"}},
    {"input", "keyboards, mice, touch pads, touch screens", collectInput, {u"Input"}},
    {"power", "batteries and power adapters", collectPower, {u"Power"}},
    {"sensors", "fan speeds, temperatures, voltages, currents, powers", collectSensors, {u"Sensor"}},
    {"security", "trusted platform modules", collectSecurity, {u"Security"}},
    {"ports", "serial ports", collectPorts, {u"Port"}},
    {"clock", "real-time clocks", collectClocks, {u"Clock"}},
    {"os", "operating system and kernel", collectOperatingSystem, {u"OperatingSystem"}},
};

}  // namespace

std::span<const Source> sources() { return SOURCES; }

}  // namespace vrx
