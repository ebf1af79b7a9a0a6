#include "libMachine/ids/PciClasses.h"

#include <algorithm>
#include <iterator>

namespace vrx {

namespace {

struct ClassRow {
    std::uint32_t mask;  ///< which bits of the class code count
    std::uint32_t code;
    StringView type;
};

constexpr std::uint32_t BASE = 0xFF0000;
constexpr std::uint32_t SUB = 0xFFFF00;
constexpr std::uint32_t WHOLE = 0xFFFFFF;

// The first row that fits decides.
constexpr ClassRow ROWS[] = {
    {SUB, 0x010100, u"IdeController"},
    {SUB, 0x010400, u"RaidController"},
    {SUB, 0x010500, u"SataController"},
    {SUB, 0x010600, u"SataController"},
    {SUB, 0x010700, u"SasController"},
    {SUB, 0x010800, u"NvmeController"},
    {BASE, 0x010000, u"StorageController"},
    {SUB, 0x020000, u"Ethernet"},
    {SUB, 0x020700, u"Infiniband"},
    {BASE, 0x020000, u"Network"},
    {BASE, 0x030000, u"Display"},
    {SUB, 0x040000, u"VideoCapture"},
    {SUB, 0x040100, u"AudioDevice"},
    {SUB, 0x040300, u"AudioDevice"},
    {BASE, 0x040000, u"Multimedia"},
    {BASE, 0x050000, u"MemoryController"},
    {SUB, 0x060400, u"PciBridge"},
    {BASE, 0x060000, u"Bus"},
    {SUB, 0x070000, u"SerialPort"},
    {SUB, 0x070100, u"ParallelPort"},
    {SUB, 0x070300, u"Modem"},
    {SUB, 0x080300, u"Clock"},
    {SUB, 0x080500, u"StorageController"},  // a host of SD cards
    {SUB, 0x090000, u"Keyboard"},
    {SUB, 0x090200, u"PointingDevice"},
    {BASE, 0x090000, u"Input"},
    {SUB, 0x0B4000, u"Coprocessor"},
    {SUB, 0x0C0000, u"FirewireController"},
    {WHOLE, 0x0C0340, u"ThunderboltController"},
    {WHOLE, 0x0C03FE, u"UsbDevice"},
    {SUB, 0x0C0300, u"UsbController"},
    {SUB, 0x0C0400, u"FibreChannel"},
    {SUB, 0x0C0500, u"I2cBus"},
    {SUB, 0x0C0600, u"Infiniband"},
    {SUB, 0x0C0700, u"ManagementController"},
    {BASE, 0x0C0000, u"SerialBus"},
    {SUB, 0x0D1100, u"Bluetooth"},
    {BASE, 0x0D0000, u"WirelessNetwork"},
    {BASE, 0x100000, u"Security"},
    {BASE, 0x120000, u"Coprocessor"},
    {BASE, 0x400000, u"Coprocessor"},
};

}  // namespace

StringView pciDeviceType(std::uint32_t classCode) noexcept {
    const auto* const row = std::find_if(std::begin(ROWS), std::end(ROWS), [classCode](const ClassRow& candidate) {
        return (classCode & candidate.mask) == candidate.code;
    });
    return row == std::end(ROWS) ? StringView(u"PciDevice") : row->type;
}

}  // namespace vrx
