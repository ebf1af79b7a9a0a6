/// Whether a range is one is asked of the matcher itself: a well-formed range matches its own low bound, and the marker
/// without one is text, which no number matches.

#include "libLint/rules/patterns/RangeText.h"

#include <algorithm>

#include "libCommon/text/ShortText.h"
#include "libRegex/Regex.h"

namespace vrx {

namespace {

/// What stands between the brackets, taken apart at the hyphen that leaves a number on either side.
std::optional<RangeText> boundsOf(StringView body) {
    for (std::size_t hyphen = body.find(u'-', 1); hyphen != StringView::npos; hyphen = body.find(u'-', hyphen + 1)) {
        const StringView lowText = body.substr(0, hyphen);
        bool isLow = false;
        bool isHigh = false;
        const double low = String(lowText).strToReal64(&isLow);
        const double high = String(body.substr(hyphen + 1)).strToReal64(&isHigh);
        if (isLow && isHigh) {
            return RangeText{lowText, low, high, 0};
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<RangeText> rangeAt(StringView pattern, std::size_t marker) {
    const std::size_t size = Regex::VRXRRANGE().size();
    const StringView rest = pattern.substr(marker + size);
    const std::size_t end = rest.find(u']');
    if (!rest.starts_with(u'[') || end == StringView::npos) {
        return std::nullopt;
    }
    std::optional<RangeText> range = boundsOf(rest.substr(1, end - 1));
    if (!range || !Regex::rangeMatches(concat(u"^", pattern.substr(marker, size + end + 1), u"$"), range->lowText,
                                       Regex::CASE_SENSITIVE)) {
        return std::nullopt;
    }
    range->end = marker + size + end + 1;
    return range;
}

std::size_t findRangeMarker(StringView pattern, std::size_t from) noexcept {
    constexpr char16_t SELDOM = u'X';  // of the marker's letters the one that hardly any other text has
    return hasUnit(pattern, SELDOM) ? pattern.find(Regex::VRXRRANGE(), from) : StringView::npos;
}

bool opensWithBounds(StringView text) {
    constexpr std::size_t ONE_DIGIT_EACH = 4;  // where the bracket of "[1-6]" closes
    const std::size_t end = text.starts_with(u'[') ? text.find(u']') : StringView::npos;
    return end != StringView::npos && end > ONE_DIGIT_EACH && boundsOf(text.substr(1, end - 1));
}

bool areDisjoint(const RangeText& a, const RangeText& b) noexcept {
    return std::max(a.low, a.high) < std::min(b.low, b.high) || std::max(b.low, b.high) < std::min(a.low, a.high);
}

}  // namespace vrx
