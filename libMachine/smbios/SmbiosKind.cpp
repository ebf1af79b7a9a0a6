#include "libMachine/smbios/SmbiosKind.h"

#include <fmt/format.h>

#include "libMachine/smbios/SmbiosNames.h"

namespace vrx::smbios {

namespace {

constexpr std::uint64_t KIB = 1024;
constexpr std::uint64_t MIB = KIB * 1024;

/// The highest bit of a size tells in which of two steps it counts.
constexpr std::uint32_t WITHOUT_HIGHEST_BIT = 0x7FFFFFFF;

}  // namespace

std::string textAt(const SmbiosStructure& structure, std::size_t offset) { return std::string(structure.text(offset)); }

/// The first three groups are stored with their lowest byte first.
std::string uuidAt(const SmbiosStructure& structure, std::size_t offset) {
    if (!structure.has(offset, 16)) {
        return {};
    }
    std::string text = fmt::format("{:08x}-{:04x}-{:04x}-", structure.dword(offset), structure.word(offset + 4),
                                   structure.word(offset + 6));
    for (std::size_t i = 8; i < 16; ++i) {
        text += fmt::format("{}{:02x}", i == 10 ? "-" : "", structure.byte(offset + i));
    }
    return text;
}

std::string releaseAt(const SmbiosStructure& structure, std::size_t offset) {
    const bool isKnown =
        structure.has(offset, 2) && structure.byte(offset) != 0xFF && structure.byte(offset + 1) != 0xFF;
    return isKnown ? versionAt(structure, offset) : std::string();
}

std::string versionAt(const SmbiosStructure& structure, std::size_t offset) {
    return fmt::format("{}.{}", structure.byte(offset), structure.byte(offset + 1));
}

std::string halvesAt(const SmbiosStructure& structure, std::size_t offset) {
    return fmt::format("{}.{}", structure.byte(offset) >> 4, structure.byte(offset) & 0x0F);
}

std::string moduleFirmwareAt(const SmbiosStructure& structure, std::size_t offset) {
    const bool isFirstVersion = structure.byte(offset - 2) == 1;
    return isFirstVersion ? versionAt(structure, offset + 2)
                          : fmt::format("{}.{}", structure.word(offset + 2), structure.word(offset));
}

std::string hexAt(const SmbiosStructure& structure, std::size_t offset) {
    return structure.word(offset) == 0 ? std::string() : fmt::format("{:04X}", structure.word(offset));
}

std::string makerIdAt(const SmbiosStructure& structure, std::size_t offset) {
    static constexpr unsigned WITHOUT_PARITY = 0x7F;
    return structure.word(offset) == 0
               ? std::string()
               : fmt::format("Bank {}, Hex 0x{:02X}", (structure.byte(offset) & WITHOUT_PARITY) + 1,
                             structure.byte(offset + 1));
}

std::string lettersAt(const SmbiosStructure& structure, std::size_t offset) {
    std::string letters;
    for (std::size_t i = 0; i < 4 && structure.byte(offset + i) != 0; ++i) {
        letters.push_back(static_cast<char>(structure.byte(offset + i)));
    }
    return letters;
}

std::string busAddressAt(const SmbiosStructure& structure, std::size_t offset) {
    const unsigned domain = structure.word(offset);
    const unsigned bus = structure.byte(offset + 2);
    const unsigned function = structure.byte(offset + 3);
    const bool isNone = domain == 0xFFFF || (bus == 0xFF && function == 0xFF);
    return !structure.has(offset, 4) || isNone
               ? std::string()
               : fmt::format("{:04x}:{:02x}:{:02x}.{}", domain, bus, function >> 3, function & 7);
}

std::string textBehindListAt(const SmbiosStructure& structure, std::size_t offset) {
    const std::size_t size = std::size_t{structure.byte(offset)} * structure.byte(offset + 1);
    return textAt(structure, offset + 2 + size);
}

std::string slotTypeAt(const SmbiosStructure& structure, std::size_t offset) {
    return slotTypeName(structure.byte(offset), structure.byte(offset + 1));
}

std::string bufferingAt(const SmbiosStructure& structure, std::size_t offset) {
    static constexpr unsigned REGISTERED = 0x2000;
    static constexpr unsigned UNBUFFERED = 0x4000;
    static constexpr unsigned LOAD_REDUCED = 0x8000;
    const unsigned bits = structure.word(offset);
    return (bits & LOAD_REDUCED) != 0 ? "Load Reduced"
           : (bits & REGISTERED) != 0 ? "Registered"
           : (bits & UNBUFFERED) != 0 ? "Unbuffered"
                                      : "";
}

OptionalNumber byteAt(const SmbiosStructure& structure, std::size_t offset, std::size_t) {
    return structure.byte(offset);
}

OptionalNumber wordAt(const SmbiosStructure& structure, std::size_t offset, std::size_t) {
    return structure.word(offset);
}

OptionalNumber countAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider) {
    const unsigned number = structure.byte(offset);
    return number == 0xFF && structure.has(wider, 2) ? structure.word(wider) : number;
}

OptionalNumber knownWordAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider) {
    static constexpr unsigned UNKNOWN = 0xFFFF;
    const unsigned number = structure.word(offset);
    return number != UNKNOWN ? number : wider == 0 ? 0 : structure.dword(wider) & WITHOUT_HIGHEST_BIT;
}

OptionalNumber measuredWordAt(const SmbiosStructure& structure, std::size_t offset, std::size_t) {
    static constexpr unsigned UNKNOWN = 0x8000;
    const unsigned number = structure.word(offset);
    return number == UNKNOWN ? 0 : number;
}

OptionalNumber lowerHalfAt(const SmbiosStructure& structure, std::size_t offset, std::size_t) {
    return structure.byte(offset) & 0x0FU;
}

OptionalNumber cacheHandleAt(const SmbiosStructure& structure, std::size_t offset, std::size_t) {
    static constexpr unsigned NONE = 0xFFFF;
    const bool isThere = structure.has(offset, 2) && structure.word(offset) != NONE;
    return isThere ? OptionalNumber(structure.word(offset)) : std::nullopt;
}

OptionalNumber cacheLevelAt(const SmbiosStructure& structure, std::size_t offset, std::size_t) {
    return (structure.word(offset) & 0x07U) + 1;
}

OptionalNumber cacheSizeAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider) {
    static constexpr unsigned WIDER = 0xFFFF;
    static constexpr unsigned STEPS_OF_64K = 0x8000;
    const unsigned size = structure.word(offset);
    if (size == WIDER && structure.has(wider, 4)) {
        const std::uint32_t wide = structure.dword(wider);
        return (wide & WITHOUT_HIGHEST_BIT) * KIB * (wide > WITHOUT_HIGHEST_BIT ? 64 : 1);
    }
    return (size & ~STEPS_OF_64K) * KIB * ((size & STEPS_OF_64K) != 0 ? 64 : 1);
}

OptionalNumber arraySizeAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider) {
    static constexpr std::uint32_t WIDER = 0x80000000;
    const std::uint32_t kilobytes = structure.dword(offset);
    return kilobytes == WIDER ? structure.qword(wider) : kilobytes * KIB;
}

OptionalNumber moduleSizeAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider) {
    static constexpr unsigned UNKNOWN = 0xFFFF;
    static constexpr unsigned WIDER = 0x7FFF;
    static constexpr unsigned IN_KILOBYTES = 0x8000;
    const unsigned size = structure.word(offset);
    if (size == UNKNOWN) {
        return 0;
    }
    if (size == WIDER) {
        return (structure.dword(wider) & WITHOUT_HIGHEST_BIT) * MIB;
    }
    return (size & IN_KILOBYTES) != 0 ? (size & ~IN_KILOBYTES) * KIB : size * MIB;
}

}  // namespace vrx::smbios
