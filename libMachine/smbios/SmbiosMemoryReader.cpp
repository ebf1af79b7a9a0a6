/// Memory arrays and modules out of an SMBIOS table.

#include "libMachine/smbios/SmbiosNames.h"
#include "libMachine/smbios/SmbiosReaders.h"

namespace vrx {

namespace {

constexpr std::uint64_t KIB = 1024;
constexpr std::uint64_t MIB = KIB * 1024;

/// Offsets in a memory device structure (type 17).
enum Module : std::size_t {
    ARRAY_HANDLE = 0x04,
    TOTAL_WIDTH = 0x08,
    DATA_WIDTH = 0x0A,
    SIZE = 0x0C,
    FORM_FACTOR = 0x0E,
    DEVICE_LOCATOR = 0x10,
    BANK_LOCATOR = 0x11,
    MEMORY_TYPE = 0x12,
    TYPE_DETAIL = 0x13,
    SPEED = 0x15,
    MANUFACTURER = 0x17,
    SERIAL_NUMBER = 0x18,
    ASSET_TAG = 0x19,
    PART_NUMBER = 0x1A,
    ATTRIBUTES = 0x1B,
    EXTENDED_SIZE = 0x1C,
    CONFIGURED_SPEED = 0x20,
    CONFIGURED_VOLTAGE = 0x26,
    EXTENDED_SPEED = 0x54,
    EXTENDED_CONFIGURED_SPEED = 0x58
};

/// Bytes of a module; 0 when it says that it does not know.
std::uint64_t moduleSize(const SmbiosStructure& module) {
    static constexpr unsigned UNKNOWN = 0xFFFF;
    static constexpr unsigned EXTENDED = 0x7FFF;
    static constexpr unsigned IN_KILOBYTES = 0x8000;
    const unsigned size = module.word(SIZE);
    if (size == UNKNOWN) {
        return 0;
    }
    if (size == EXTENDED) {
        return (module.dword(EXTENDED_SIZE) & 0x7FFFFFFF) * MIB;
    }
    return (size & IN_KILOBYTES) != 0 ? (size & ~IN_KILOBYTES) * KIB : size * MIB;
}

/// A field of 16 bits of which 0 and 0xFFFF stand for "not known"; 0xFFFF may refer to a wider field.
std::uint32_t knownWord(const SmbiosStructure& module, std::size_t offset, std::size_t wider = 0) {
    static constexpr std::uint32_t UNKNOWN = 0xFFFF;
    const std::uint32_t number = module.word(offset);
    return number != UNKNOWN ? number : wider == 0 ? 0 : module.dword(wider) & 0x7FFFFFFF;
}

std::string_view bufferingName(unsigned typeDetail) noexcept {
    static constexpr unsigned REGISTERED = 0x2000;
    static constexpr unsigned UNBUFFERED = 0x4000;
    static constexpr unsigned LOAD_REDUCED = 0x8000;
    return (typeDetail & LOAD_REDUCED) != 0 ? "Load Reduced"
           : (typeDetail & REGISTERED) != 0 ? "Registered"
           : (typeDetail & UNBUFFERED) != 0 ? "Unbuffered"
                                            : "";
}

}  // namespace

void readMemoryArray(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned SYSTEM_MEMORY = 3;
    static constexpr std::uint32_t EXTENDED = 0x80000000;
    MemoryArrayFacts& array = facts.memory.arrays.emplace_back();
    array.place = placeOf(structure);
    array.isSystemMemory = structure.byte(0x05) == SYSTEM_MEMORY;
    array.errorCorrection = errorCorrectionName(structure.byte(0x06));
    const std::uint32_t kilobytes = structure.dword(0x07);
    array.maximumSize = kilobytes == EXTENDED ? structure.qword(0x0F) : kilobytes * KIB;
    array.slots = structure.word(0x0D);
}

void readMemoryModule(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned RANK_BITS = 0x0F;
    static constexpr double MILLIVOLTS = 1000;
    MemoryModuleFacts& module = facts.memory.modules.emplace_back();
    module.place = placeOf(structure);
    module.array = structure.word(ARRAY_HANDLE);
    module.isInstalled = structure.word(SIZE) != 0;
    module.slot = structure.text(DEVICE_LOCATOR);
    module.bank = structure.text(BANK_LOCATOR);
    module.formFactor = memoryFormFactorName(structure.byte(FORM_FACTOR));
    module.memoryType = memoryTypeName(structure.byte(MEMORY_TYPE));
    module.buffering = bufferingName(structure.word(TYPE_DETAIL));
    module.vendor = structure.text(MANUFACTURER);
    module.partNumber = structure.text(PART_NUMBER);
    module.serialNumber = structure.text(SERIAL_NUMBER);
    module.assetTag = structure.text(ASSET_TAG);
    module.size = moduleSize(structure);
    module.speed = knownWord(structure, SPEED, EXTENDED_SPEED);
    module.configuredSpeed = knownWord(structure, CONFIGURED_SPEED, EXTENDED_CONFIGURED_SPEED);
    module.voltage = knownWord(structure, CONFIGURED_VOLTAGE) / MILLIVOLTS;
    module.dataWidth = knownWord(structure, DATA_WIDTH);
    module.totalWidth = knownWord(structure, TOTAL_WIDTH);
    module.ranks = structure.byte(ATTRIBUTES) & RANK_BITS;
}

}  // namespace vrx
