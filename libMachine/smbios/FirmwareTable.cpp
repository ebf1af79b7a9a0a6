/// An entry point is known by its anchor. Its fields, all little-endian: of the 64-bit one ("_SM3_") the table's
/// longest size at 12 and address at 16, of the 32-bit one ("_SM_") size at 22 and address at 24. In a dump the address
/// is the place in the file.

#include "libMachine/smbios/FirmwareTable.h"

#include <cstdint>

namespace vrx {

namespace {

/// Requires: the bytes are there.
std::uint64_t littleEndian(std::string_view bytes, std::size_t offset, std::size_t size) noexcept {
    std::uint64_t number = 0;
    for (std::size_t i = size; i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(bytes[offset + i - 1]);
    }
    return number;
}

std::string_view tableAt(std::string_view file, std::uint64_t address, std::uint64_t size) noexcept {
    return address >= file.size() ? std::string_view() : file.substr(address, size);
}

}  // namespace

std::string_view tableInFile(std::string_view file) noexcept {
    static constexpr std::size_t SMALLEST_ENTRY_POINT = 0x18;
    static constexpr std::size_t LEGACY_ENTRY_POINT = 0x1F;
    if (file.starts_with("_SM3_") && file.size() >= SMALLEST_ENTRY_POINT) {
        return tableAt(file, littleEndian(file, 16, 8), littleEndian(file, 12, 4));
    }
    if (file.starts_with("_SM_") && file.size() >= LEGACY_ENTRY_POINT) {
        return tableAt(file, littleEndian(file, 24, 4), littleEndian(file, 22, 2));
    }
    return file;
}

}  // namespace vrx
