#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "libMachine/import/dmidecode/DmidecodeText.h"

namespace vrx {

/// The values of one structure, freed from what dmidecode itself writes where the table has nothing. Numbers that
/// cannot be read are counted as damage and taken as unknown. Borrows from what it was made of.
class DmidecodeValues {
public:
    DmidecodeValues(const DmidecodeStructure& structure, DamageList& damage)
        : m_structure(structure), m_damage(damage) {}

    const DmidecodeStructure& structure() const noexcept { return m_structure; }

    /// A vendor's text; empty where dmidecode says that there is none.
    std::string text(std::string_view key) const;

    /// A word of a fixed list; empty where it says that it is another one or not known.
    std::string word(std::string_view key) const;

    /// The same of a value.
    static std::string textIn(std::string_view value);
    static std::string wordIn(std::string_view value);

    /// A plain number; 0 where there is none.
    unsigned number(std::string_view key) const;

    /// "0x1000"; empty where there is none.
    std::optional<unsigned> handle(std::string_view key) const;

    /// Bytes.
    std::uint64_t size(std::string_view key) const;

    /// The number before one of the units, which are divided by '|' ("MT/s|MHz"); 0 where there is none. Never above
    /// 1,000,000,000.
    double measure(std::string_view key, std::string_view units) const;

private:
    std::string_view raw(std::string_view key) const noexcept;

    /// Splits "16384 MB" in two; false where the value is a word. A number that cannot be read is counted.
    bool split(std::string_view key, double& number, std::string_view& unit) const;
    void countUnreadable(std::string_view key) const;

    const DmidecodeStructure& m_structure;
    DamageList& m_damage;
};

}  // namespace vrx
