/// Patterns are compared after decoding, so they are judged decoded too. Whether a range is one is asked of the matcher
/// itself: a well-formed range matches its own low bound, and the marker without one is text, which no number matches.

#include "libLint/rules/PatternRules.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "libCommon/text/PrintableText.h"
#include "libCommon/text/UuCode.h"
#include "libLint/rules/PatternGrowth.h"
#include "libRegex/Regex.h"

namespace vrx {

namespace {

struct Bounds {
    StringView lowText;
    double low;
    double high;
};

/// What stands between the brackets, taken apart at the hyphen that leaves a number on either side.
std::optional<Bounds> boundsOf(StringView body) {
    for (std::size_t hyphen = body.find(u'-', 1); hyphen != StringView::npos; hyphen = body.find(u'-', hyphen + 1)) {
        const StringView lowText = body.substr(0, hyphen);
        bool isLow = false;
        bool isHigh = false;
        const double low = String(lowText).strToReal64(&isLow);
        const double high = String(body.substr(hyphen + 1)).strToReal64(&isHigh);
        if (isLow && isHigh) {
            return Bounds{lowText, low, high};
        }
    }
    return std::nullopt;
}

std::optional<Bounds> rangeBehind(StringView marker, StringView rest) {
    const std::size_t end = rest.find(u']');
    if (!rest.starts_with(u'[') || end == StringView::npos) {
        return std::nullopt;
    }
    const std::optional<Bounds> bounds = boundsOf(rest.substr(1, end - 1));
    if (!bounds || !Regex::rangeMatches(concat(u"^", marker, rest.substr(0, end + 1), u"$"), bounds->lowText,
                                        Regex::CASE_SENSITIVE)) {
        return std::nullopt;
    }
    return bounds;
}

void checkRanges(const XmlElement& element, StringView pattern, LintFindings& findings) {
    const StringView marker = Regex::VRXRRANGE();
    for (std::size_t at = pattern.find(marker); at != StringView::npos; at = pattern.find(marker, at + 1)) {
        const std::optional<Bounds> bounds = rangeBehind(marker, pattern.substr(at + marker.size()));
        if (!bounds) {
            findings.add(LintRule::RangeSyntax, element,
                         fmt::format("{} at character {} of \"{}\" is compared as plain text; write [low-high] behind "
                                     "it, two decimal numbers without blanks",
                                     printable(marker), at + 1, printable(pattern)));
        } else if (bounds->low == bounds->high && bounds->low != 0) {  // generated ranges around 0 are [0-0]
            findings.add(LintRule::RangeSingleValue, element,
                         fmt::format("the range in \"{}\" holds nothing but {}; widen its bounds", printable(pattern),
                                     printable(bounds->lowText)));
        }
    }
}

}  // namespace

void checkPattern(const XmlElement& element, StringView written, LintFindings& findings) {
    const String decoded = fromXmlSafe(written);
    const StringView pattern = decoded;
    if (pattern.empty()) {
        findings.add(LintRule::EmptyPattern, element,
                     "an empty pattern accepts every text; write ^$ for an empty one, or leave the attribute out");
        return;
    }
    std::size_t offset = 0;
    if (const String problem = Regex::compileError(pattern, &offset); !problem.isEmpty()) {
        findings.add(LintRule::PatternSyntax, element,
                     fmt::format("the pattern \"{}\" does not compile, so it is only compared as plain text: {} at "
                                 "character {}; correct it, or put a backslash before what is meant literally",
                                 printable(pattern), printable(problem.view()), offset + 1));
    } else if (canExplode(pattern)) {
        findings.add(LintRule::PatternExplodes, element,
                     fmt::format("the pattern \"{}\" repeats a repetition and may be given up on long values; repeat "
                                 "only once, as in (a|b)+ for (a+|b+)+",
                                 printable(pattern)));
    }
    checkRanges(element, pattern, findings);
}

}  // namespace vrx
