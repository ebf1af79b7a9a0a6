#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "libCommon/values/Unit.h"
#include "libCommon/values/UnitDefinitions.h"

namespace vrx {

/// One unit with its prefix: "MHz", "megahertz".
struct UnitRow {
    UnitKind kind = UnitKind::None;
    UnitScale scale;
    String symbol;
    String singular;
    String plural;
};

/// All units with all of their spellings, built on first use. A magnitude code is the index of a row plus 1.
class UnitTable {
public:
    static const UnitTable& instance();

    /// The unit of a symbol (exact) or long name (without case), without blanks at the ends.
    std::optional<Unit> find(StringView text) const;

    /// The row of a magnitude; that of the kind's base unit for code 0, an empty one without a kind. Requires: the
    /// magnitude belongs to the kind.
    const UnitRow& row(UnitKind kind, UnitMagnitude magnitude) const;

    static double convert(double number, const UnitScale& from, const UnitScale& to) noexcept;

private:
    struct SpellingHash {
        using is_transparent = void;
        using is_avalanching = void;
        std::size_t operator()(StringView text) const noexcept { return hashOf(text); }
    };
    using Spellings = boost::unordered_flat_map<std::u16string, std::uint16_t, SpellingHash, std::equal_to<>>;

    UnitTable();
    void addUnit(const UnitBase& base, const UnitPrefix& prefix);
    void addSymbol(const UnitPrefix& prefix, StringView symbol, std::uint16_t code);

    std::vector<UnitRow> m_rows;
    Spellings m_symbols;
    Spellings m_names;  ///< folded
};

}  // namespace vrx
