#include "libRegex/ranges/RangeForm.h"

#include <algorithm>
#include <optional>

#include "libRegex/ranges/PatternItems.h"

// A range is the marker followed by "[low-high]". It matches one number by its value, which a regular expression cannot
// say. So each range becomes a group
//
//     (?:(?C1) number )
//
// of an ordinary pattern. When the matcher reaches the callout it asks whether a number of the value begins at that
// very place and lies between the bounds; the text behind the callout then only steps over that number. Because the
// question is asked inside the matching, ranges work wherever a group does: several in one pattern, in alternatives,
// repeated, with backtracking around them.
//
// Invariants:
//   - The group's own text accepts exactly the extent that the number scanner gives, whatever options the surrounding
//     pattern sets: it is possessive throughout (no shorter extent is tried, and "(?U)" does not matter), captures
//     nothing (back references keep their numbers) and holds no blank (so "(?x)" does not matter).
//   - A callout is told apart by the place behind it, so a pattern's own callouts are never taken for a range.
//
// The marker is ordinary text where no valid "[low-high]" follows, inside "\Q..\E", in a character class and in a
// comment. A backslash before it escapes its first letter as it would any other. In a lookbehind a range does not
// compile, because a number has no fixed length.

namespace vrx {

namespace {

constexpr StringView MARKER = RangeForm::MARKER;
constexpr StringView GROUP_BEGIN = u"(?:(?C1)";
constexpr StringView GROUP_END = u"[-+]?+(?:\\d++(?:\\.\\d*+)?+|\\.\\d++)(?:[Ee][-+]?+\\d++)?+)";

// Reads a bound and the unit that must follow it; moves the position behind both.
std::optional<double> takeBound(StringView pattern, std::size_t& position, char16_t follower) noexcept {
    const auto end = numberEnd(pattern, position);
    if (!end || *end == pattern.size() || pattern[*end] != follower) {
        return std::nullopt;
    }
    const double bound = numberValue(pattern.substr(position, *end - position));
    position = *end + 1;
    return bound;
}

std::optional<RangeSite> rangeAt(StringView pattern, std::size_t begin) noexcept {
    std::size_t position = begin + MARKER.size() + 1;
    if (pattern.substr(begin, MARKER.size()) != MARKER || position > pattern.size() || pattern[position - 1] != u'[') {
        return std::nullopt;
    }
    const auto first = takeBound(pattern, position, u'-');
    const auto second = first ? takeBound(pattern, position, u']') : std::nullopt;
    if (!second) {
        return std::nullopt;
    }
    // Contract: the larger bound may come first; generated ranges around a negative number are written so.
    return RangeSite{begin, position, 0, {std::min(*first, *second), std::max(*first, *second)}};
}

}  // namespace

RangeForm::RangeForm(StringView pattern) {
    std::size_t copied = 0;
    std::size_t position = pattern.find(MARKER) == StringView::npos ? pattern.size() : 0;
    while (position < pattern.size()) {
        if (const auto site = rangeAt(pattern, position)) {
            m_ordinaryPattern.append(pattern.substr(copied, position - copied));
            appendRange(*site);
            copied = position = site->end;
        } else {
            position = patternItemEnd(pattern, position);
        }
    }
    m_ordinaryPattern.append(pattern.substr(copied));
}

void RangeForm::appendRange(RangeSite site) {
    m_ordinaryPattern.append(GROUP_BEGIN);
    site.position = m_ordinaryPattern.size();
    m_ordinaryPattern.append(GROUP_END);
    m_sites.push_back(site);
}

const RangeSite* RangeForm::siteAt(std::size_t position) const noexcept {
    const auto site = std::ranges::lower_bound(m_sites, position, {}, &RangeSite::position);
    return site != m_sites.end() && site->position == position ? &*site : nullptr;
}

std::size_t RangeForm::writtenOffset(std::size_t ordinaryOffset) const noexcept {
    const auto next =
        std::ranges::upper_bound(m_sites, ordinaryOffset + GROUP_BEGIN.size() - 1, {}, &RangeSite::position);
    if (next == m_sites.begin()) {
        return ordinaryOffset;
    }
    const RangeSite& site = *std::prev(next);
    const std::size_t groupEnd = site.position + GROUP_END.size();
    return ordinaryOffset < groupEnd ? site.begin : site.end + (ordinaryOffset - groupEnd);
}

}  // namespace vrx
