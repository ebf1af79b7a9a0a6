/// A structure is a header of four bytes (type, length of the formatted part with the header, handle), the rest of the
/// formatted part, and a set of texts: each ends with a NUL, the set with one more; a structure without texts has two
/// NULs. The table ends with a structure of type 127 or with its last byte.
///
/// A structure whose formatted part does not fit ends the table and is dropped; one whose set of texts has no end keeps
/// the texts that are there and is the last.

#include "libMachine/smbios/SmbiosTable.h"

#include <algorithm>
#include <array>

namespace vrx {

namespace {

constexpr std::size_t HEADER_SIZE = 4;

}  // namespace

bool SmbiosStructure::has(std::size_t offset, std::size_t size) const noexcept {
    return offset <= m_formatted.size() && size <= m_formatted.size() - offset;
}

std::uint64_t SmbiosStructure::number(std::size_t offset, std::size_t size) const noexcept {
    std::uint64_t number = 0;
    for (std::size_t i = size; has(offset, size) && i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(m_formatted[offset + i - 1]);
    }
    return number;
}

std::string_view SmbiosStructure::text(std::size_t offset) const noexcept {
    std::string_view rest = m_strings;
    for (unsigned number = byte(offset); number > 0 && !rest.empty(); --number) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        if (number == 1) {
            return rest.substr(0, end);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return {};
}

SmbiosTable::SmbiosTable(std::vector<char> bytes) : m_bytes(std::move(bytes)) { parse(); }

void SmbiosTable::parse() {
    static constexpr std::string_view END_OF_TEXTS("\0\0", 2);
    std::array<unsigned, 256> counts{};
    std::string_view rest(m_bytes.data(), m_bytes.size());
    while (rest.size() >= HEADER_SIZE) {
        const auto type = static_cast<unsigned char>(rest[0]);
        const auto length = static_cast<unsigned char>(rest[1]);
        if (length < HEADER_SIZE || length > rest.size()) {
            break;
        }
        const std::size_t end = rest.find(END_OF_TEXTS, length);
        const std::string_view strings = rest.substr(length, end == std::string_view::npos ? end : end - length);
        m_structures.emplace_back(rest.substr(0, length), strings, counts[type]++);
        if (type == END) {
            return;
        }
        if (end == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(end + END_OF_TEXTS.size());
    }
    m_isDamaged = !rest.empty();
}

}  // namespace vrx
