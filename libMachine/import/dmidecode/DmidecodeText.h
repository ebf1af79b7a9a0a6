#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// One structure of the text, which it borrows from.
struct DmidecodeStructure {
    struct Field {
        std::string_view key;
        std::string_view value;
        std::size_t line = 0;
    };

    unsigned handle = 0;
    unsigned type = 0;
    std::size_t line = 0;
    std::string_view title;
    std::vector<Field> fields;            ///< in the order of the text
    std::vector<std::string_view> items;  ///< lines of lists below a field, without saying which

    /// The first field of that key; null when there is none.
    const Field* field(std::string_view key) const noexcept;

    bool hasItem(std::string_view item) const noexcept;
};

struct DmidecodeText {
    std::vector<DmidecodeStructure> structures;
    bool isWhole = true;  ///< false where structures are known to be missing
};

/// Cuts the text into its structures. Lines may be indented with tabs or blanks of any number, or not at all. What
/// cannot be read is left out and counted. A structure that is there twice, with the same handle and the same fields,
/// is given once.
DmidecodeText parseDmidecode(std::string_view text, DamageList& damage);

}  // namespace vrx
