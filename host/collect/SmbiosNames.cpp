#include "host/collect/SmbiosNames.h"

#include <cstddef>
#include <iterator>

namespace vrx::host {

namespace {

constexpr std::string_view CHASSIS_TYPES[] = {
    "",
    "",
    "",
    "Desktop",
    "Low Profile Desktop",
    "Pizza Box",
    "Mini Tower",
    "Tower",
    "Portable",
    "Laptop",
    "Notebook",
    "Hand Held",
    "Docking Station",
    "All In One",
    "Sub Notebook",
    "Space-saving",
    "Lunch Box",
    "Main Server Chassis",
    "Expansion Chassis",
    "Sub Chassis",
    "Bus Expansion Chassis",
    "Peripheral Chassis",
    "RAID Chassis",
    "Rack Mount Chassis",
    "Sealed-case PC",
    "Multi-system",
    "CompactPCI",
    "AdvancedTCA",
    "Blade",
    "Blade Enclosing",
    "Tablet",
    "Convertible",
    "Detachable",
    "IoT Gateway",
    "Embedded PC",
    "Mini PC",
    "Stick PC",
};

constexpr std::string_view MEMORY_TYPES[] = {
    "",      "",      "",       "DRAM",   "EDRAM",        "VRAM",   "SRAM",   "RAM",
    "ROM",   "Flash", "EEPROM", "FEPROM", "EPROM",        "CDRAM",  "3DRAM",  "SDRAM",
    "SGRAM", "RDRAM", "DDR",    "DDR2",   "DDR2 FB-DIMM", "",       "",       "",
    "DDR3",  "FBD2",  "DDR4",   "LPDDR",  "LPDDR2",       "LPDDR3", "LPDDR4", "Logical non-volatile device",
    "HBM",   "HBM2",  "DDR5",   "LPDDR5", "HBM3",
};

constexpr std::string_view FORM_FACTORS[] = {
    "",        "",       "",
    "SIMM",    "SIP",    "Chip",
    "DIP",     "ZIP",    "Proprietary Card",
    "DIMM",    "TSOP",   "Row Of Chips",
    "RIMM",    "SODIMM", "SRIMM",
    "FB-DIMM", "Die",    "CAMM",
};

constexpr std::string_view ERROR_CORRECTIONS[] = {
    "", "", "", "None", "Parity", "Single-bit ECC", "Multi-bit ECC", "CRC",
};

template <std::size_t Size>
std::string_view nameIn(const std::string_view (&names)[Size], unsigned number) noexcept {
    return number < Size ? names[number] : std::string_view();
}

}  // namespace

std::string_view chassisTypeName(unsigned number) noexcept { return nameIn(CHASSIS_TYPES, number); }

std::string_view memoryTypeName(unsigned number) noexcept { return nameIn(MEMORY_TYPES, number); }

std::string_view memoryFormFactorName(unsigned number) noexcept { return nameIn(FORM_FACTORS, number); }

std::string_view errorCorrectionName(unsigned number) noexcept { return nameIn(ERROR_CORRECTIONS, number); }

}  // namespace vrx::host
