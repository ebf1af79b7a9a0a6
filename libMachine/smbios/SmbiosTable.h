#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vrx {

/// One structure of an SMBIOS table. Bytes that the structure does not have read as 0, whatever its length says.
/// Borrows from its table.
class SmbiosStructure {
public:
    /// `formatted` includes the header; `strings` is the set of NUL-terminated texts behind it.
    SmbiosStructure(std::string_view formatted, std::string_view strings, unsigned instance) noexcept
        : m_formatted(formatted), m_strings(strings), m_instance(instance) {}

    std::uint8_t type() const noexcept { return static_cast<std::uint8_t>(number(0, 1)); }
    std::uint16_t handle() const noexcept { return word(2); }

    /// How many structures of its type come before it.
    unsigned instance() const noexcept { return m_instance; }

    /// Whether the structure is long enough to hold `size` bytes at `offset`.
    bool has(std::size_t offset, std::size_t size) const noexcept;

    std::uint8_t byte(std::size_t offset) const noexcept { return static_cast<std::uint8_t>(number(offset, 1)); }
    std::uint16_t word(std::size_t offset) const noexcept { return static_cast<std::uint16_t>(number(offset, 2)); }
    std::uint32_t dword(std::size_t offset) const noexcept { return static_cast<std::uint32_t>(number(offset, 4)); }
    std::uint64_t qword(std::size_t offset) const noexcept { return number(offset, 8); }

    /// The text whose number stands at that offset; empty when there is none.
    std::string_view text(std::size_t offset) const noexcept;

private:
    std::uint64_t number(std::size_t offset, std::size_t size) const noexcept;

    std::string_view m_formatted;
    std::string_view m_strings;
    unsigned m_instance;
};

/// The structures of an SMBIOS table as firmware left it. Nothing in it is trusted: what lies beyond the end of the
/// bytes does not exist, and the first structure that makes no sense ends the table.
class SmbiosTable {
public:
    enum Type : std::uint8_t {
        BIOS = 0,
        SYSTEM = 1,
        BOARD = 2,
        CHASSIS = 3,
        PROCESSOR = 4,
        CACHE = 7,
        SLOT = 9,
        ONBOARD_LIST = 10,
        MEMORY_ARRAY = 16,
        MEMORY_DEVICE = 17,
        PORTABLE_BATTERY = 22,
        COOLING_DEVICE = 27,
        MANAGEMENT_CONTROLLER = 38,
        POWER_SUPPLY = 39,
        ONBOARD_DEVICE = 41,
        TRUSTED_PLATFORM = 43,
        END = 127
    };

    /// Largest table that is read; real ones have a few kilobytes.
    static constexpr std::size_t LARGEST = std::size_t{1024} * 1024;

    SmbiosTable() = default;
    explicit SmbiosTable(std::vector<char> bytes);
    SmbiosTable(SmbiosTable&&) = default;
    SmbiosTable& operator=(SmbiosTable&&) = default;

    bool isEmpty() const noexcept { return m_structures.empty(); }

    /// Whether it ended before its last structure was complete.
    bool isDamaged() const noexcept { return m_isDamaged; }

    std::span<const SmbiosStructure> structures() const noexcept { return m_structures; }

private:
    void parse();

    std::vector<char> m_bytes;  // a vector, because its bytes stay where they are when the table is moved
    std::vector<SmbiosStructure> m_structures;
    bool m_isDamaged = false;
};

}  // namespace vrx
