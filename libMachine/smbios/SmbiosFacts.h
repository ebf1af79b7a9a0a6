#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What firmware tells of a machine in its SMBIOS table, whoever read it: the table itself (readSmbiosFacts), or the
/// text that another program made of it. FirmwareDevices.h and its neighbours make devices of it.
///
/// Texts are as the vendor wrote them, placeholders included, and empty where there is none. Words of fixed lists
/// ("DDR4", "Rack Mount Chassis") are those of SmbiosNames.h, empty for "other" and "unknown". Numbers are 0 where
/// unknown.
namespace vrx {

class SmbiosTable;

/// Where a structure stands: facts refer to each other by handle.
struct SmbiosPlace {
    unsigned handle = 0;
    unsigned instance = 0;  ///< how many structures of its type come before it
    std::string osLocator;  ///< smbiosEntry(type, instance); empty where the source knows none
};

struct BiosFacts {
    SmbiosPlace place;
    std::string vendor;
    std::string version;
    std::string releaseDate;         ///< in whatever form
    std::string revision;            ///< "5.14"
    std::string controllerRevision;  ///< of the embedded controller's firmware, "2.78"
    bool isVirtualMachine = false;
};

struct SystemFacts {
    SmbiosPlace place;
    std::string vendor;
    std::string model;
    std::string version;
    std::string serialNumber;
    std::string uuid;  ///< in small letters
    std::string sku;
    std::string family;
};

struct BoardFacts {
    SmbiosPlace place;
    std::string vendor;
    std::string model;
    std::string version;
    std::string serialNumber;
    std::string assetTag;
    std::string location;  ///< in the chassis
    std::string type;      ///< "Server Blade"
};

struct ChassisFacts {
    SmbiosPlace place;
    std::string vendor;
    std::string type;
    std::string version;
    std::string serialNumber;
    std::string assetTag;
    std::string sku;
    unsigned height = 0;  ///< in rack units
};

struct CacheFacts {
    SmbiosPlace place;
    unsigned level = 0;
    std::uint64_t size = 0;   ///< in bytes, over all cores
    bool isSizeKnown = true;  ///< otherwise the source tells no sizes, and 0 does not mean that there is none
};

struct ProcessorFacts {
    SmbiosPlace place;
    bool isPopulated = false;
    std::string socket;      ///< the label on the board
    std::string socketType;  ///< "Socket LGA3647-1"
    std::string vendor;
    std::string version;  ///< the model's name
    std::string serialNumber;
    std::string assetTag;
    std::string partNumber;
    std::optional<unsigned> family;  ///< these three from the processor's CPUID
    std::optional<unsigned> model;
    std::optional<unsigned> stepping;
    unsigned clock = 0;     ///< MHz, as set at start
    unsigned maxClock = 0;  ///< MHz that the socket allows
    unsigned cores = 0;     ///< those that are enabled
    unsigned threads = 0;
    std::optional<unsigned> level3Cache;  ///< handle
};

struct MemoryArrayFacts {
    SmbiosPlace place;
    bool isSystemMemory = true;  ///< not the firmware's own flash memory
    std::string errorCorrection;
    std::uint64_t maximumSize = 0;  ///< in bytes
    unsigned slots = 0;
};

struct MemoryModuleFacts {
    SmbiosPlace place;
    std::optional<unsigned> array;  ///< handle
    bool isInstalled = false;
    std::string slot;  ///< the label on the board
    std::string bank;
    std::string formFactor;
    std::string memoryType;
    std::string buffering;      ///< "Registered", "Unbuffered", "Load Reduced"
    std::string technology;     ///< "DRAM", "NVDIMM-N"
    bool isPersistent = false;  ///< keeps what it holds without power, so it is no RAM
    std::string vendor;
    std::string makerId;  ///< the code that the module itself holds: "Bank 1, Hex 0xCE"
    std::string partNumber;
    std::string serialNumber;
    std::string assetTag;
    std::uint64_t size = 0;        ///< in bytes
    unsigned speed = 0;            ///< MT/s, what it can do
    unsigned configuredSpeed = 0;  ///< MT/s
    double voltage = 0;            ///< V, as configured
    unsigned dataWidth = 0;        ///< bits
    unsigned totalWidth = 0;
    unsigned ranks = 0;
};

struct MemoryFacts {
    std::vector<MemoryArrayFacts> arrays;
    std::vector<MemoryModuleFacts> modules;
};

struct ExpansionSlotFacts {
    SmbiosPlace place;
    std::string designation;
    std::string type;        ///< "x16 PCI Express 3"
    std::string length;      ///< "Long"
    std::string usage;       ///< "In Use", "Available"
    std::string busAddress;  ///< "0000:3b:00.0"
};

/// A device on the board.
struct OnboardDeviceFacts {
    SmbiosPlace place;
    std::string designation;
    std::string type;  ///< "Ethernet"
    bool isEnabled = false;
    std::string busAddress;  ///< on the PCI bus; empty in tables of older firmware
};

struct PowerSupplyFacts {
    SmbiosPlace place;
    bool isPresent = true;
    std::string location;
    std::string name;
    std::string vendor;
    std::string serialNumber;
    std::string assetTag;
    std::string partNumber;
    std::string revision;
    unsigned maxPower = 0;  ///< W
};

struct PortableBatteryFacts {
    SmbiosPlace place;
    std::string location;
    std::string vendor;
    std::string serialNumber;
    std::string name;
    std::string chemistry;
    unsigned designCapacity = 0;  ///< mWh
    double designVoltage = 0;     ///< V
};

struct CoolingDeviceFacts {
    SmbiosPlace place;
    std::string type;  ///< "Chip Fan"
    std::string description;
    unsigned nominalSpeed = 0;  ///< RPM
};

struct ManagementControllerFacts {
    SmbiosPlace place;
    std::string interfaceType;  ///< "KCS"
    std::string version;        ///< of IPMI, "2.0"
};

struct TrustedPlatformFacts {
    SmbiosPlace place;
    std::string vendor;
    std::string version;          ///< of TPM, "2.0"
    std::string firmwareVersion;  ///< "7.2"
    std::string description;
};

struct SmbiosFacts {
    bool isEmpty = true;  ///< there was no structure at all
    std::optional<BiosFacts> bios;
    std::optional<SystemFacts> system;
    std::vector<BoardFacts> boards;
    std::vector<ChassisFacts> chassis;
    std::vector<ProcessorFacts> processors;
    std::vector<CacheFacts> caches;
    MemoryFacts memory;
    std::vector<ExpansionSlotFacts> slots;
    std::vector<OnboardDeviceFacts> onboardDevices;
    std::vector<PowerSupplyFacts> powerSupplies;
    std::vector<PortableBatteryFacts> batteries;
    std::vector<CoolingDeviceFacts> coolingDevices;
    std::optional<ManagementControllerFacts> managementController;
    std::optional<TrustedPlatformFacts> trustedPlatform;
};

/// The facts of a table.
SmbiosFacts readSmbiosFacts(const SmbiosTable& table);

/// What dmi-sysfs calls a structure: "/sys/firmware/dmi/entries/17-3".
std::string smbiosEntry(unsigned type, unsigned instance);

}  // namespace vrx
