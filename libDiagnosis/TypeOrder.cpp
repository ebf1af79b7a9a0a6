#include "libDiagnosis/TypeOrder.h"

#include <algorithm>
#include <vector>

namespace vrx {

namespace {

struct Row {
    StringView type;
    bool isReplaceable;
};

/// The first row that fits decides.
constexpr Row ROWS[] = {
    {u"ProcessorCore", false},
    {u"Processor", true},
    {u"Coprocessor", true},
    {u"MemoryModule", true},
    {u"Memory", false},
    {u"Storage", true},
    {u"StorageController", true},
    {u"Volume", false},
    {u"Network", true},
    {u"Bluetooth", true},
    {u"Modem", true},
    {u"Display", true},
    {u"Multimedia", true},
    {u"PciDevice", true},
    {u"UsbDevice", true},
    {u"Bus", true},
    {u"Power", true},
    {u"Cooling", true},
    {u"Monitor", true},
    {u"Input", true},
    {u"Security", true},
    {u"Firmware", false},
    {u"Motherboard", true},
    {u"Chassis", true},
    {u"System", false},
    {u"Cache", false},
    {u"Slot", false},
    {u"Port", false},
    {u"Clock", false},
    {u"Sensor", false},
    {u"OperatingSystem", false},
    {u"Driver", false},
};

std::size_t rowOf(const CapabilityImp& type) {
    static const std::vector<CapabilityImp> TYPES = [] {
        std::vector<CapabilityImp> types;
        std::ranges::transform(ROWS, std::back_inserter(types), [](const Row& row) { return CapabilityImp(row.type); });
        return types;
    }();
    const auto at = std::ranges::find_if(TYPES, [&type](const CapabilityImp& one) { return one.isCapable(type); });
    return static_cast<std::size_t>(at - TYPES.begin());
}

}  // namespace

// Cores are parts of a processor, and come behind all that can be held.
unsigned typeRank(const CapabilityImp& type) {
    const std::size_t row = rowOf(type);
    return static_cast<unsigned>(row == 0 ? std::size(ROWS) - 1 : row);
}

bool isReplaceable(const CapabilityImp& type) {
    const std::size_t row = rowOf(type);
    return row < std::size(ROWS) && ROWS[row].isReplaceable;
}

}  // namespace vrx
