#pragma once

#include <cstddef>
#include <vector>

#include "libCommon/text/String.h"
#include "libRegex/ranges/NumberScanner.h"

namespace vrx {

/// One range of a pattern.
struct RangeSite {
    std::size_t begin = 0;     ///< where the marker stands in the pattern as written
    std::size_t end = 0;       ///< just behind the closing bracket
    std::size_t position = 0;  ///< in the ordinary pattern: where what follows the range's callout stands
    NumberRange range;
};

/// A pattern with its ranges taken out: an ordinary regular expression that asks, by a callout, whether the number at
/// the present place lies in a range.
class RangeForm {
public:
    /// The text that, followed by "[low-high]", makes a range.
    static constexpr StringView MARKER = u"VRXRRANGE";

    /// The number that the callouts of ranges carry. Patterns may hold callouts of their own, with any number; only the
    /// place tells them apart.
    static constexpr unsigned CALLOUT_NUMBER = 1;

    explicit RangeForm(StringView pattern);

    /// The ranges in the order in which they stand.
    const std::vector<RangeSite>& sites() const noexcept { return m_sites; }

    /// The ordinary regular expression; the pattern itself when it has no range.
    const String& ordinaryPattern() const noexcept { return m_ordinaryPattern; }

    /// The range whose callout stands before `position` of the ordinary pattern; null for any other callout.
    const RangeSite* siteAt(std::size_t position) const noexcept;

    /// The place in the pattern as written that a place of the ordinary pattern comes from.
    std::size_t writtenOffset(std::size_t ordinaryOffset) const noexcept;

private:
    void appendRange(RangeSite site);

    std::vector<RangeSite> m_sites;
    String m_ordinaryPattern;
};

}  // namespace vrx
