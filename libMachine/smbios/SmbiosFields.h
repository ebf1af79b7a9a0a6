#pragma once

#include <variant>

#include "libMachine/smbios/SmbiosFacts.h"
#include "libMachine/smbios/SmbiosKind.h"
#include "libMachine/smbios/SmbiosNames.h"

/// The structures of SMBIOS, each described once for both who read it: where a field stands in the table and how, and
/// what dmidecode calls it in its text, with '|' between names of newer and older versions. SmbiosWalk.h reads them;
/// what only one of the two has, or in a way of its own, is a small function of its reader.
///
/// A field that has several rows takes the first that says something. The order of the rows is the one in which damage
/// of the text is met.
namespace vrx {

template <typename Facts>
struct SmbiosField {
    std::variant<std::string Facts::*, unsigned Facts::*, std::uint64_t Facts::*, double Facts::*,
                 std::optional<unsigned> Facts::*>
        member;
    std::size_t offset;
    SmbiosKind kind;
    std::string_view label;
};

namespace smbios {

inline constexpr SmbiosKind TEXT = {.text = textAt};
inline constexpr SmbiosKind UUID = {.text = uuidAt, .writing = SmbiosWriting::Uuid};
inline constexpr SmbiosKind RELEASE = {.text = releaseAt};
inline constexpr SmbiosKind VERSION = {.text = versionAt};
inline constexpr SmbiosKind VERSION_IN_HALVES = {.text = halvesAt};
inline constexpr SmbiosKind HEX = {.text = hexAt};
inline constexpr SmbiosKind LETTERS = {.text = lettersAt};
inline constexpr SmbiosKind BUS_ADDRESS = {.text = busAddressAt};
inline constexpr SmbiosKind BUFFERING = {.text = bufferingAt, .writing = SmbiosWriting::Buffering};
inline constexpr SmbiosKind CACHE_LEVEL = {.number = cacheLevelAt, .writing = SmbiosWriting::CacheLevel};
inline constexpr SmbiosKind HANDLE = {.number = wordAt, .writing = SmbiosWriting::Handle};
inline constexpr SmbiosKind CACHE_HANDLE = {.number = cacheHandleAt, .writing = SmbiosWriting::Handle};

constexpr SmbiosKind word(SmbiosKind::ReadText read) { return {.text = read, .writing = SmbiosWriting::Word}; }

constexpr SmbiosKind number(SmbiosKind::ReadNumber read, std::size_t wider = 0) {
    return {.number = read, .wider = wider, .writing = SmbiosWriting::Number};
}

constexpr SmbiosKind measure(SmbiosKind::ReadNumber read, std::string_view units, std::size_t wider = 0) {
    return {.number = read, .wider = wider, .writing = SmbiosWriting::Measure, .units = units};
}

constexpr SmbiosKind size(SmbiosKind::ReadNumber read, std::size_t wider) {
    return {.number = read, .wider = wider, .writing = SmbiosWriting::Size};
}

inline constexpr SmbiosKind MODULE_VOLTAGE = {
    .number = knownWordAt, .divisor = 1000, .writing = SmbiosWriting::Measure, .units = "V"};
inline constexpr SmbiosKind BATTERY_VOLTAGE = {
    .number = wordAt, .divisor = 1000, .writing = SmbiosWriting::Measure, .units = "mV"};

inline constexpr std::string_view BITS = "bits|bit";
inline constexpr std::string_view TRANSFERS = "MT/s|MHz";  // older versions call transfers a second MHz

inline constexpr SmbiosField<BiosFacts> BIOS_FIELDS[] = {
    {&BiosFacts::vendor, 0x04, TEXT, "Vendor"},
    {&BiosFacts::version, 0x05, TEXT, "Version"},
    {&BiosFacts::releaseDate, 0x08, TEXT, "Release Date"},
    {&BiosFacts::revision, 0x14, RELEASE, "BIOS Revision"},
    {&BiosFacts::controllerRevision, 0x16, RELEASE, "Firmware Revision"},
};

inline constexpr SmbiosField<SystemFacts> SYSTEM_FIELDS[] = {
    {&SystemFacts::vendor, 0x04, TEXT, "Manufacturer"}, {&SystemFacts::model, 0x05, TEXT, "Product Name"},
    {&SystemFacts::version, 0x06, TEXT, "Version"},     {&SystemFacts::serialNumber, 0x07, TEXT, "Serial Number"},
    {&SystemFacts::uuid, 0x08, UUID, "UUID"},           {&SystemFacts::sku, 0x19, TEXT, "SKU Number"},
    {&SystemFacts::family, 0x1A, TEXT, "Family"},
};

inline constexpr SmbiosField<BoardFacts> BOARD_FIELDS[] = {
    {&BoardFacts::vendor, 0x04, TEXT, "Manufacturer"},
    {&BoardFacts::model, 0x05, TEXT, "Product Name"},
    {&BoardFacts::version, 0x06, TEXT, "Version"},
    {&BoardFacts::serialNumber, 0x07, TEXT, "Serial Number"},
    {&BoardFacts::assetTag, 0x08, TEXT, "Asset Tag"},
    {&BoardFacts::location, 0x0A, TEXT, "Location In Chassis"},
    {&BoardFacts::type, 0x0D, word(nameAt<boardTypeName>), "Type"},
};

inline constexpr SmbiosField<ChassisFacts> CHASSIS_FIELDS[] = {
    {&ChassisFacts::vendor, 0x04, TEXT, "Manufacturer"},
    {&ChassisFacts::type, 0x05, word(nameAt<chassisTypeName, 0x7F>), "Type"},  // the highest bit tells of a lock
    {&ChassisFacts::version, 0x06, TEXT, "Version"},
    {&ChassisFacts::serialNumber, 0x07, TEXT, "Serial Number"},
    {&ChassisFacts::assetTag, 0x08, TEXT, "Asset Tag"},
    {&ChassisFacts::sku, 0x13, {.text = textBehindListAt}, "SKU Number"},
    {&ChassisFacts::height, 0x11, measure(byteAt, "U"), "Height"},
};

inline constexpr SmbiosField<ProcessorFacts> PROCESSOR_FIELDS[] = {
    {&ProcessorFacts::socket, 0x04, TEXT, "Socket Designation"},
    {&ProcessorFacts::socketType, 0x19, word(nameAt<processorSocketName>), "Upgrade"},
    {&ProcessorFacts::vendor, 0x07, TEXT, "Manufacturer"},
    {&ProcessorFacts::version, 0x10, TEXT, "Version"},
    {&ProcessorFacts::serialNumber, 0x20, TEXT, "Serial Number"},
    {&ProcessorFacts::assetTag, 0x21, TEXT, "Asset Tag"},
    {&ProcessorFacts::partNumber, 0x22, TEXT, "Part Number"},
    {&ProcessorFacts::clock, 0x16, measure(wordAt, "MHz"), "Current Speed"},
    {&ProcessorFacts::maxClock, 0x14, measure(wordAt, "MHz"), "Max Speed"},
    {&ProcessorFacts::cores, 0x24, number(countAt, 0x2C), "Core Enabled"},
    {&ProcessorFacts::cores, 0x23, number(countAt, 0x2A), "Core Count"},
    {&ProcessorFacts::threads, 0x25, number(countAt, 0x2E), "Thread Count"},
    {&ProcessorFacts::level3Cache, 0x1E, CACHE_HANDLE, "L3 Cache Handle"},
};

inline constexpr SmbiosField<CacheFacts> CACHE_FIELDS[] = {
    {&CacheFacts::level, 0x05, CACHE_LEVEL, "Configuration"},
    {&CacheFacts::size, 0x09, size(cacheSizeAt, 0x17), "Installed Size"},
};

inline constexpr SmbiosField<ExpansionSlotFacts> SLOT_FIELDS[] = {
    {&ExpansionSlotFacts::designation, 0x04, TEXT, "Designation"},
    {&ExpansionSlotFacts::type, 0x05, word(slotTypeAt), "Type"},
    {&ExpansionSlotFacts::usage, 0x07, word(nameAt<slotUsageName>), "Current Usage"},
    {&ExpansionSlotFacts::length, 0x08, word(nameAt<slotLengthName>), "Length"},
    {&ExpansionSlotFacts::busAddress, 0x0D, BUS_ADDRESS, "Bus Address"},
};

inline constexpr SmbiosField<MemoryArrayFacts> ARRAY_FIELDS[] = {
    {&MemoryArrayFacts::errorCorrection, 0x06, word(nameAt<errorCorrectionName>), "Error Correction Type"},
    {&MemoryArrayFacts::maximumSize, 0x07, size(arraySizeAt, 0x0F), "Maximum Capacity"},
    {&MemoryArrayFacts::slots, 0x0D, number(wordAt), "Number Of Devices"},
};

inline constexpr SmbiosField<MemoryModuleFacts> MODULE_FIELDS[] = {
    {&MemoryModuleFacts::array, 0x04, HANDLE, "Array Handle"},
    {&MemoryModuleFacts::slot, 0x10, TEXT, "Locator"},
    {&MemoryModuleFacts::bank, 0x11, TEXT, "Bank Locator"},
    {&MemoryModuleFacts::formFactor, 0x0E, word(nameAt<memoryFormFactorName>), "Form Factor"},
    {&MemoryModuleFacts::memoryType, 0x12, word(nameAt<memoryTypeName>), "Type"},
    {&MemoryModuleFacts::buffering, 0x13, BUFFERING, "Type Detail"},
    {&MemoryModuleFacts::technology, 0x28, word(nameAt<memoryTechnologyName>), "Memory Technology"},
    {&MemoryModuleFacts::vendor, 0x17, TEXT, "Manufacturer"},
    {&MemoryModuleFacts::makerId, 0x2C, word(makerIdAt), "Module Manufacturer ID"},
    {&MemoryModuleFacts::partNumber, 0x1A, TEXT, "Part Number"},
    {&MemoryModuleFacts::serialNumber, 0x18, TEXT, "Serial Number"},
    {&MemoryModuleFacts::assetTag, 0x19, TEXT, "Asset Tag"},
    {&MemoryModuleFacts::size, 0x0C, size(moduleSizeAt, 0x1C), "Size"},
    {&MemoryModuleFacts::speed, 0x15, measure(knownWordAt, TRANSFERS, 0x54), "Speed"},
    {&MemoryModuleFacts::configuredSpeed, 0x20, measure(knownWordAt, TRANSFERS, 0x58),
     "Configured Memory Speed|Configured Clock Speed"},
    {&MemoryModuleFacts::voltage, 0x26, MODULE_VOLTAGE, "Configured Voltage"},
    {&MemoryModuleFacts::dataWidth, 0x0A, measure(knownWordAt, BITS), "Data Width"},
    {&MemoryModuleFacts::totalWidth, 0x08, measure(knownWordAt, BITS), "Total Width"},
    {&MemoryModuleFacts::ranks, 0x1B, number(lowerHalfAt), "Rank"},
};

// What a smart battery says of itself stands behind what the firmware says.
inline constexpr SmbiosField<PortableBatteryFacts> BATTERY_FIELDS[] = {
    {&PortableBatteryFacts::location, 0x04, TEXT, "Location"},
    {&PortableBatteryFacts::vendor, 0x05, TEXT, "Manufacturer"},
    {&PortableBatteryFacts::serialNumber, 0x07, TEXT, "Serial Number"},
    {&PortableBatteryFacts::serialNumber, 0x10, HEX, "SBDS Serial Number"},
    {&PortableBatteryFacts::name, 0x08, TEXT, "Name"},
    {&PortableBatteryFacts::chemistry, 0x09, word(nameAt<batteryChemistryName>), "Chemistry"},
    {&PortableBatteryFacts::chemistry, 0x14, TEXT, "SBDS Chemistry"},
    {&PortableBatteryFacts::designCapacity, 0x0A, measure(wordAt, "mWh"), "Design Capacity"},
    {&PortableBatteryFacts::designVoltage, 0x0C, BATTERY_VOLTAGE, "Design Voltage"},
};

inline constexpr SmbiosField<CoolingDeviceFacts> COOLING_FIELDS[] = {
    {&CoolingDeviceFacts::type, 0x06, word(nameAt<coolingTypeName, 0x1F>), "Type"},  // the other bits tell its status
    {&CoolingDeviceFacts::description, 0x0E, TEXT, "Description"},
    {&CoolingDeviceFacts::nominalSpeed, 0x0C, measure(measuredWordAt, "rpm|RPM"), "Nominal Speed"},
};

inline constexpr SmbiosField<ManagementControllerFacts> CONTROLLER_FIELDS[] = {
    {&ManagementControllerFacts::interfaceType, 0x04, word(nameAt<managementInterfaceName>), "Interface Type"},
    {&ManagementControllerFacts::version, 0x05, VERSION_IN_HALVES, "Specification Version"},
};

inline constexpr SmbiosField<PowerSupplyFacts> SUPPLY_FIELDS[] = {
    {&PowerSupplyFacts::location, 0x05, TEXT, "Location"},
    {&PowerSupplyFacts::name, 0x06, TEXT, "Name"},
    {&PowerSupplyFacts::vendor, 0x07, TEXT, "Manufacturer"},
    {&PowerSupplyFacts::serialNumber, 0x08, TEXT, "Serial Number"},
    {&PowerSupplyFacts::assetTag, 0x09, TEXT, "Asset Tag"},
    {&PowerSupplyFacts::partNumber, 0x0A, TEXT, "Model Part Number"},
    {&PowerSupplyFacts::revision, 0x0B, TEXT, "Revision"},
    {&PowerSupplyFacts::maxPower, 0x0C, measure(measuredWordAt, "W"), "Max Power Capacity"},
};

inline constexpr SmbiosField<OnboardDeviceFacts> ONBOARD_FIELDS[] = {
    {&OnboardDeviceFacts::designation, 0x04, TEXT, "Reference Designation"},
    {&OnboardDeviceFacts::type, 0x05, word(nameAt<onboardDeviceName, 0x7F>), "Type"},
    {&OnboardDeviceFacts::busAddress, 0x07, BUS_ADDRESS, "Bus Address"},
};

inline constexpr SmbiosField<TrustedPlatformFacts> TRUSTED_PLATFORM_FIELDS[] = {
    {&TrustedPlatformFacts::vendor, 0x04, LETTERS, "Vendor ID"},
    {&TrustedPlatformFacts::version, 0x08, VERSION, "Specification Version"},
    {&TrustedPlatformFacts::firmwareVersion, 0x0A, {.text = moduleFirmwareAt}, "Firmware Revision"},
    {&TrustedPlatformFacts::description, 0x12, TEXT, "Description"},
};

}  // namespace smbios

}  // namespace vrx
