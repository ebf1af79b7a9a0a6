#include "libGolden/GoldenPattern.h"

#include <algorithm>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/UuCode.h"

namespace vrx {

namespace {

constexpr StringView RANGE = u"VRXRRANGE";

/// No file can hold a control character, but a pattern can speak of it.
void appendEscape(String& pattern, char16_t unit) {
    constexpr StringView DIGITS = u"0123456789ABCDEF";
    pattern.append(u"\\x{");
    for (int shift = 12; shift >= 0; shift -= 4) {
        pattern.append(DIGITS[(unit >> shift) & 0xF]);
    }
    pattern.append(u'}');
}

/// Whether the "range" that is there could be taken for the end of the word for ranges, or for what is meant to be it.
bool endsRangeWord(StringView text, std::size_t at) {
    constexpr StringView END = u"range";
    const bool hasBounds = text.substr(std::min(at + END.size(), text.size())).starts_with(u'[');
    return equalNoCase(text.substr(at, END.size()), END) &&
           (hasBounds || (at > 0 && StringView(u"RrXx").find(text[at - 1]) != StringView::npos));
}

String escaped(StringView text) {
    constexpr StringView SPECIAL = u"\\^$.?*+{}()[]|";
    constexpr StringView COMPARING = u"<>=!";  // at the start it reads like a comparison, which patterns do not know
    const std::size_t start = text.find_first_not_of(u' ');
    String pattern;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!isXmlRepresentable(text, i) || endsRangeWord(text, i)) {
            appendEscape(pattern, text[i]);
            continue;
        }
        if (SPECIAL.find(text[i]) != StringView::npos || (i == start && COMPARING.find(text[i]) != StringView::npos)) {
            pattern.append(u'\\');
        }
        pattern.append(text[i]);
    }
    return pattern;
}

String alternativesPattern(const GoldenDecision& decision) {
    String pattern = u"^";
    for (const ValueVariant& variant : decision.variants) {
        pattern.append(pattern.size() == 1 ? u"(" : u"|").append(escaped(variant.texts[0]));
    }
    return pattern.append(u")$");
}

}  // namespace

String exactPattern(StringView text) { return concat(u"^", escaped(text), u"$"); }

String patternOf(const GoldenDecision& decision) {
    switch (decision.choice) {
        case GoldenDecision::Choice::Range:
            return concat(u"^", RANGE, u"[", toText(decision.low), u"-", toText(decision.high), u"]",
                          decision.units.isEmpty() ? u"" : u" ", decision.units, u"$");
        case GoldenDecision::Choice::Alternatives: return alternativesPattern(decision);
        default: return exactPattern(decision.variants.front().texts[0]);
    }
}

}  // namespace vrx
