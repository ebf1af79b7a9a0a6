#include "libMachine/collect/SourceTable.h"

#include "libMachine/collect/CollectContext.h"

namespace vrx {

namespace {

constexpr Source SOURCES[] = {
    {"system", "the machine as a whole", collectSystem, true, true},
    {"board", "board, chassis and BIOS", collectBoard, false, true},
    {"processor", "processors, their cores and caches", collectProcessors, false, true},
    {"memory", "memory, its modules and empty slots", collectMemory, false, true},
    {"pci", "PCI devices", collectPci, true},
    {"usb", "USB hubs and devices", collectUsb, true},
    {"storage", "disks and other drives", collectStorage, true},
    {"raid", "what RAID, SAS and Fibre Channel controllers say of themselves", collectStorageControllers},
    {"partitions", "partitions of disks", collectPartitions},
    {"network", "network adapters", collectNetwork},
    {"firmware", "slots, power supplies, batteries and other devices that only the firmware's table tells of",
     collectFirmwareDevices, false, true},
    {"graphics", "graphics adapters and monitors", collectGraphics},
    {"sound", "sound cards and their codecs", collectSound},
    {"cameras", "cameras and picture sources", collectCameras},
    {"input", "keyboards, mice, touch pads, touch screens", collectInput},
    {"power", "batteries and power adapters", collectPower},
    {"sensors", "fan speeds, temperatures, voltages, currents, powers", collectSensors},
    {"security", "trusted platform modules", collectSecurity},
    {"ports", "serial ports", collectPorts},
    {"clock", "real-time clocks", collectClocks},
    {"os", "operating system and kernel", collectOperatingSystem},
};

}  // namespace

std::span<const Source> sources() { return SOURCES; }

}  // namespace vrx
