#pragma once

#include <optional>

#include "libCommon/text/String.h"
#include "libCommon/values/Unit.h"

namespace vrx {

/// The unit behind the last range of a pattern.
class UnitRange {
public:
    /// `tail` is what stands behind the range, to the end of the pattern. Empty when it is anything but one blank, a
    /// unit of the unit table and perhaps "$". The result borrows the tail.
    static std::optional<UnitRange> parse(StringView tail);

    /// The unit as the pattern writes it.
    StringView unitText() const noexcept { return m_unitText; }

    /// The number of a value that is a number, a blank and a unit of this kind, given in this unit; empty for any
    /// other value.
    std::optional<double> numberOf(StringView value) const;

private:
    UnitRange(StringView unitText, const Unit& unit) noexcept : m_unitText(unitText), m_unit(unit) {}

    StringView m_unitText;
    Unit m_unit;
};

}  // namespace vrx
