#include "libMachine/smbios/SmbiosNames.h"

#include <cstddef>
#include <iterator>

namespace vrx {

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

constexpr std::string_view MEMORY_TECHNOLOGIES[] = {
    "", "", "", "DRAM", "NVDIMM-N", "NVDIMM-F", "NVDIMM-P", "Intel Optane persistent memory",
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

constexpr std::string_view BOARD_TYPES[] = {
    "",
    "",
    "",
    "Server Blade",
    "Connectivity Switch",
    "System Management Module",
    "Processor Module",
    "I/O Module",
    "Memory Module",
    "Daughter Board",
    "Motherboard",
    "Processor+Memory Module",
    "Processor+I/O Module",
    "Interconnect Board",
};

constexpr std::string_view PROCESSOR_SOCKETS[] = {
    "",
    "",
    "",
    "Daughter Board",
    "ZIF Socket",
    "Replaceable Piggy Back",
    "",
    "LIF Socket",
    "Slot 1",
    "Slot 2",
    "370-pin Socket",
    "Slot A",
    "Slot M",
    "Socket 423",
    "Socket A (Socket 462)",
    "Socket 478",
    "Socket 754",
    "Socket 940",
    "Socket 939",
    "Socket mPGA604",
    "Socket LGA771",
    "Socket LGA775",
    "Socket S1",
    "Socket AM2",
    "Socket F (1207)",
    "Socket LGA1366",
    "Socket G34",
    "Socket AM3",
    "Socket C32",
    "Socket LGA1156",
    "Socket LGA1567",
    "Socket PGA988A",
    "Socket BGA1288",
    "Socket rPGA988B",
    "Socket BGA1023",
    "Socket BGA1224",
    "Socket LGA1155",
    "Socket LGA1356",
    "Socket LGA2011",
    "Socket FS1",
    "Socket FS2",
    "Socket FM1",
    "Socket FM2",
    "Socket LGA2011-3",
    "Socket LGA1356-3",
    "Socket LGA1150",
    "Socket BGA1168",
    "Socket BGA1234",
    "Socket BGA1364",
    "Socket AM4",
    "Socket LGA1151",
    "Socket BGA1356",
    "Socket BGA1440",
    "Socket BGA1515",
    "Socket LGA3647-1",
    "Socket SP3",
    "Socket SP3r2",
    "Socket LGA2066",
    "Socket BGA1392",
    "Socket BGA1510",
    "Socket BGA1528",
    "Socket LGA4189",
    "Socket LGA1200",
    "Socket LGA4677",
    "Socket LGA1700",
    "Socket BGA1744",
    "Socket BGA1781",
    "Socket BGA1211",
    "Socket BGA2422",
    "Socket LGA1211",
    "Socket LGA2422",
    "Socket LGA5773",
    "Socket BGA5773",
    "Socket AM5",
    "Socket SP5",
    "Socket SP6",
    "Socket BGA883",
    "Socket BGA1190",
    "Socket BGA4129",
    "Socket LGA4710",
    "Socket LGA7529",
};

constexpr std::string_view SLOT_TYPES[] = {
    "",
    "",
    "",
    "ISA",
    "MCA",
    "EISA",
    "PCI",
    "PC Card (PCMCIA)",
    "VLB",
    "Proprietary",
    "Processor Card",
    "Proprietary Memory Card",
    "I/O Riser Card",
    "NuBus",
    "PCI-66",
    "AGP",
    "AGP 2x",
    "AGP 4x",
    "PCI-X",
    "AGP 8x",
    "M.2 Socket 1-DP",
    "M.2 Socket 1-SD",
    "M.2 Socket 2",
    "M.2 Socket 3",
    "MXM Type I",
    "MXM Type II",
    "MXM Type III",
    "MXM Type III-HE",
    "MXM Type IV",
    "MXM 3.0 Type A",
    "MXM 3.0 Type B",
    "PCI Express 2 SFF-8639 (U.2)",
    "PCI Express 3 SFF-8639 (U.2)",
    "PCI Express Mini 52-pin with bottom-side keep-outs",
    "PCI Express Mini 52-pin without bottom-side keep-outs",
    "PCI Express Mini 76-pin",
    "PCI Express 4 SFF-8639 (U.2)",
    "PCI Express 5 SFF-8639 (U.2)",
    "OCP NIC 3.0 Small Form Factor (SFF)",
    "OCP NIC 3.0 Large Form Factor (LFF)",
    "OCP NIC Prior to 3.0",
};

constexpr std::string_view SLOT_WIDTHS[] = {
    "", "", "", "8-bit", "16-bit", "32-bit", "64-bit", "128-bit", "x1", "x2", "x4", "x8", "x12", "x16", "x32",
};

constexpr std::string_view SLOT_LENGTHS[] = {
    "", "", "", "Short", "Long", "2.5\" drive form factor", "3.5\" drive form factor",
};

constexpr std::string_view SLOT_USAGES[] = {"", "", "", "Available", "In Use", "Unavailable"};

constexpr std::string_view ONBOARD_DEVICES[] = {
    "",
    "",
    "",
    "Video",
    "SCSI Controller",
    "Ethernet",
    "Token Ring",
    "Sound",
    "PATA Controller",
    "SATA Controller",
    "SAS Controller",
    "Wireless LAN",
    "Bluetooth",
    "WWAN",
    "eMMC",
    "NVMe Controller",
    "UFS Controller",
};

constexpr std::string_view COOLING_TYPES[] = {
    "",
    "",
    "",
    "Fan",
    "Centrifugal Blower",
    "Chip Fan",
    "Cabinet Fan",
    "Power Supply Fan",
    "Heat Pipe",
    "Integrated Refrigeration",
    "",
    "",
    "",
    "",
    "",
    "",
    "Active Cooling",
    "Passive Cooling",
};

constexpr std::string_view BATTERY_CHEMISTRIES[] = {
    "", "", "", "Lead Acid", "Nickel Cadmium", "Nickel Metal Hydride", "Lithium Ion", "Zinc Air", "Lithium Polymer",
};

constexpr std::string_view MANAGEMENT_INTERFACES[] = {"", "KCS", "SMIC", "BT", "SSIF"};

/// The kinds of PCI Express slots are numbered in runs of six: any width, x1, x2, x4, x8, x16. Empty for other numbers.
std::string pciExpressName(unsigned number) {
    struct Run {
        unsigned first;
        std::string_view name;
    };
    static constexpr Run RUNS[] = {{0xA5, "PCI Express"},
                                   {0xAB, "PCI Express 2"},
                                   {0xB1, "PCI Express 3"},
                                   {0xB8, "PCI Express 4"},
                                   {0xBE, "PCI Express 5"}};
    static constexpr std::string_view WIDTHS[] = {"", " x1", " x2", " x4", " x8", " x16"};
    static constexpr unsigned LATER = 0xC4;
    for (const Run& run : RUNS) {
        if (number >= run.first && number - run.first < std::size(WIDTHS)) {
            return std::string(run.name).append(WIDTHS[number - run.first]);
        }
    }
    return number == LATER ? "PCI Express 6+" : "";
}

template <std::size_t Size>
std::string_view nameIn(const std::string_view (&names)[Size], unsigned number) noexcept {
    return number < Size ? names[number] : std::string_view();
}

}  // namespace

std::string_view chassisTypeName(unsigned number) noexcept { return nameIn(CHASSIS_TYPES, number); }

std::string_view memoryTypeName(unsigned number) noexcept { return nameIn(MEMORY_TYPES, number); }

std::string_view memoryTechnologyName(unsigned number) noexcept { return nameIn(MEMORY_TECHNOLOGIES, number); }

std::string_view memoryFormFactorName(unsigned number) noexcept { return nameIn(FORM_FACTORS, number); }

std::string_view errorCorrectionName(unsigned number) noexcept { return nameIn(ERROR_CORRECTIONS, number); }

std::string_view boardTypeName(unsigned number) noexcept { return nameIn(BOARD_TYPES, number); }

std::string_view processorSocketName(unsigned number) noexcept { return nameIn(PROCESSOR_SOCKETS, number); }

std::string_view slotLengthName(unsigned number) noexcept { return nameIn(SLOT_LENGTHS, number); }

std::string_view slotUsageName(unsigned number) noexcept { return nameIn(SLOT_USAGES, number); }

std::string_view onboardDeviceName(unsigned number) noexcept { return nameIn(ONBOARD_DEVICES, number); }

std::string_view coolingTypeName(unsigned number) noexcept { return nameIn(COOLING_TYPES, number); }

std::string_view batteryChemistryName(unsigned number) noexcept { return nameIn(BATTERY_CHEMISTRIES, number); }

std::string_view managementInterfaceName(unsigned number) noexcept { return nameIn(MANAGEMENT_INTERFACES, number); }

std::string slotTypeName(unsigned type, unsigned width) {
    const std::string express = pciExpressName(type);
    const std::string name = express.empty() ? std::string(nameIn(SLOT_TYPES, type)) : express;
    const std::string_view lanes = nameIn(SLOT_WIDTHS, width);
    return name.empty() || lanes.empty() ? name : std::string(lanes).append(" ").append(name);
}

}  // namespace vrx
