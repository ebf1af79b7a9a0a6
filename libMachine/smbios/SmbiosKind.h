#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "libMachine/smbios/SmbiosTable.h"

/// In what ways a field of an SMBIOS structure may be written, in the table and in the text that dmidecode makes of it.
/// Number 0 and an empty text stand for "not known".
namespace vrx {

/// How the text writes a field.
enum class SmbiosWriting : std::uint8_t {
    Text,        ///< a vendor's text
    Word,        ///< a word of a fixed list
    Uuid,        ///< in capital letters
    Buffering,   ///< "Synchronous Registered (Buffered)"
    Number,      ///< "16"
    Measure,     ///< "2666 MT/s"
    Size,        ///< "16 GB"
    Handle,      ///< "0x1000"
    CacheLevel,  ///< "Enabled, Not Socketed, Level 3"
};

/// One of the ways. `text` or `number` reads it out of the table; both get the field's offset, `number` also that of
/// the wider field which newer tables have for numbers that do not fit.
struct SmbiosKind {
    using ReadText = std::string (*)(const SmbiosStructure&, std::size_t offset);
    using ReadNumber = std::optional<std::uint64_t> (*)(const SmbiosStructure&, std::size_t offset, std::size_t wider);

    ReadText text = nullptr;
    ReadNumber number = nullptr;
    std::size_t wider = 0;
    unsigned divisor = 1;  ///< what the table's number is divided by
    SmbiosWriting writing = SmbiosWriting::Text;
    std::string_view units = {};  ///< of a Measure, with '|' between what stands for the same
};

namespace smbios {

std::string textAt(const SmbiosStructure& structure, std::size_t offset);
std::string uuidAt(const SmbiosStructure& structure, std::size_t offset);

/// "5.14" from two bytes; 255 stands for "not known".
std::string releaseAt(const SmbiosStructure& structure, std::size_t offset);

/// "2.0" from two bytes, or from the two halves of one.
std::string versionAt(const SmbiosStructure& structure, std::size_t offset);
std::string halvesAt(const SmbiosStructure& structure, std::size_t offset);

/// "7.2" of a trusted platform module, whose version, before it, says how.
std::string moduleFirmwareAt(const SmbiosStructure& structure, std::size_t offset);

/// "1A2B" from a word; empty for 0.
std::string hexAt(const SmbiosStructure& structure, std::size_t offset);

/// "Bank 1, Hex 0xCE" from the number of the maker's bank, less one, and its code in it; empty for 0.
std::string makerIdAt(const SmbiosStructure& structure, std::size_t offset);

/// Four letters, or fewer before a NUL.
std::string lettersAt(const SmbiosStructure& structure, std::size_t offset);

/// "0000:3b:00.0" from a domain of two bytes, a bus, and device and function in one; empty when there is none.
std::string busAddressAt(const SmbiosStructure& structure, std::size_t offset);

/// The text behind a list: number of its elements and size of each come first.
std::string textBehindListAt(const SmbiosStructure& structure, std::size_t offset);

/// From the byte of the type and the one of the width behind it.
std::string slotTypeAt(const SmbiosStructure& structure, std::size_t offset);

/// From the bits that say what a memory module is.
std::string bufferingAt(const SmbiosStructure& structure, std::size_t offset);

/// The word of a fixed list (SmbiosNames.h) for the bits of a byte.
template <std::string_view (*NameOf)(unsigned) noexcept, unsigned Bits = 0xFF>
std::string nameAt(const SmbiosStructure& structure, std::size_t offset) {
    return std::string(NameOf(structure.byte(offset) & Bits));
}

using OptionalNumber = std::optional<std::uint64_t>;

OptionalNumber byteAt(const SmbiosStructure& structure, std::size_t offset, std::size_t);
OptionalNumber wordAt(const SmbiosStructure& structure, std::size_t offset, std::size_t);

/// A byte of which 255 refers to the wider word.
OptionalNumber countAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider);

/// A word of which 0xFFFF stands for "not known", or refers to the wider field.
OptionalNumber knownWordAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider);

/// A word of which 0x8000 stands for "not known".
OptionalNumber measuredWordAt(const SmbiosStructure& structure, std::size_t offset, std::size_t);

/// The lower half of a byte.
OptionalNumber lowerHalfAt(const SmbiosStructure& structure, std::size_t offset, std::size_t);

/// The handle of a cache; none where the structure has no room for it, or 0xFFFF.
OptionalNumber cacheHandleAt(const SmbiosStructure& structure, std::size_t offset, std::size_t);

/// The level in the bits of a cache's configuration.
OptionalNumber cacheLevelAt(const SmbiosStructure& structure, std::size_t offset, std::size_t);

/// Bytes of a cache, of a memory array and of a memory module, each of which counts in steps of its own.
OptionalNumber cacheSizeAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider);
OptionalNumber arraySizeAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider);
OptionalNumber moduleSizeAt(const SmbiosStructure& structure, std::size_t offset, std::size_t wider);

}  // namespace smbios

}  // namespace vrx
