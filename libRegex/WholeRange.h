#pragma once

#include <optional>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libRegex/ranges/NumberScanner.h"
#include "libRegex/ranges/UnitRange.h"

namespace vrx {

/// A pattern that is one range and nothing else, as those of generated scripts: "^", the range, perhaps a blank and a
/// unit, "$". It matches the values whose number lies in the range, so that they can be found without looking at the
/// others. It borrows the pattern.
class VRX_EXPORT WholeRange {
public:
    /// Empty for any other pattern.
    static std::optional<WholeRange> parse(StringView pattern);

    const NumberRange& range() const noexcept { return m_range; }

    /// The unit as the pattern writes it; empty for none. Ranges of one unit see the same numbers.
    StringView unitText() const noexcept { return m_unit ? m_unit->unitText() : StringView(); }

    /// The number of a value, in the unit of the pattern; empty where the value is no such number.
    std::optional<double> numberOf(StringView value) const;

    bool matches(StringView value) const {
        const auto number = numberOf(value);
        return number && m_range.contains(*number);
    }

private:
    WholeRange(const NumberRange& range, const std::optional<UnitRange>& unit) noexcept
        : m_range(range), m_unit(unit) {}

    NumberRange m_range;
    std::optional<UnitRange> m_unit;
};

}  // namespace vrx
