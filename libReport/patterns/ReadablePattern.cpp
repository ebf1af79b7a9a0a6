#include "libReport/patterns/ReadablePattern.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/PrintableText.h"
#include "libRegex/Regex.h"
#include "libReport/patterns/PatternBounds.h"

namespace vrx {

namespace {

constexpr bool isMetacharacter(char16_t unit) noexcept {
    switch (unit) {
        case u'^':
        case u'$':
        case u'.':
        case u'*':
        case u'+':
        case u'?':
        case u'(':
        case u')':
        case u'[':
        case u']':
        case u'{':
        case u'}':
        case u'|': return true;
        default: return false;
    }
}

bool isWordCharacter(char16_t unit) noexcept {
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

/// Whether an odd number of backslashes stands in front of the last unit.
bool isLastEscaped(StringView pattern) noexcept {
    std::size_t backslashes = 0;
    for (std::size_t i = pattern.size() - 1; i > 0 && pattern[i - 1] == u'\\'; --i) {
        ++backslashes;
    }
    return backslashes % 2 == 1;
}

StringView withoutAnchors(StringView pattern) noexcept {
    if (!pattern.empty() && pattern.front() == u'^') {
        pattern.remove_prefix(1);
    }
    if (!pattern.empty() && pattern.back() == u'$' && !isLastEscaped(pattern)) {
        pattern.remove_suffix(1);
    }
    return pattern;
}

/// Reads "VRXRRANGE[low-high]" at the start of `rest`, which is not empty, and takes it away. A tolerance around a
/// negative number is written with the high bound first; people read the low one first.
std::optional<String> takeRange(StringView& rest) {
    static const StringView marker = Regex::VRXRRANGE();
    if (rest.front() != marker.front() || !rest.starts_with(marker) || rest.size() <= marker.size() ||
        rest[marker.size()] != u'[') {
        return std::nullopt;
    }
    const StringView inside = rest.substr(marker.size() + 1);
    const std::size_t end = inside.find(u']');
    const std::size_t hyphen = inside.find(u'-', 1);
    if (end == StringView::npos || hyphen == StringView::npos || hyphen >= end) {
        return std::nullopt;
    }
    StringView low = inside.substr(0, hyphen);
    StringView high = inside.substr(hyphen + 1, end - hyphen - 1);
    const std::optional<double> lowNumber = parseReal(low);
    const std::optional<double> highNumber = parseReal(high);
    if (!lowNumber || !highNumber) {
        return std::nullopt;
    }
    if (*lowNumber > *highNumber) {
        std::swap(low, high);
    }
    rest = inside.substr(end + 1);
    return concat(low, u"..", high);
}

/// The text that the pattern stands for; nothing when it is more than escaped text and ranges.
std::optional<String> plainText(StringView rest) {
    String text;
    while (!rest.empty()) {
        if (const std::optional<String> range = takeRange(rest)) {
            text.append(*range);
            continue;
        }
        const bool isEscape = rest.front() == u'\\' && rest.size() > 1;
        if (isEscape ? isWordCharacter(rest[1]) : isMetacharacter(rest.front())) {
            return std::nullopt;
        }
        rest.remove_prefix(isEscape ? 1 : 0);
        text.append(rest.front());
        rest.remove_prefix(1);
    }
    return text;
}

/// Where the character stands without a backslash that takes its meaning away; the size where it does not.
std::size_t findBare(StringView pattern, char16_t unit, std::size_t from) noexcept {
    std::size_t at = from;
    while (at < pattern.size() && pattern[at] != unit) {
        at += pattern[at] == u'\\' ? 2 : 1;
    }
    return std::min(at, pattern.size());
}

/// Whether it is one pair of parentheses with no other inside.
bool isGroup(StringView text) noexcept {
    return text.size() > 2 && text.front() == u'(' && findBare(text, u')', 1) == text.size() - 1;
}

/// The texts of "(A|B)"; none when one of them is more than text.
std::vector<String> alternativesOf(StringView group) {
    StringView rest = group.substr(1, group.size() - 2);
    rest.remove_prefix(rest.starts_with(u"?:") ? 2 : 0);
    std::vector<String> texts;
    for (std::size_t start = 0; start <= rest.size();) {
        const std::size_t end = findBare(rest, u'|', start);
        const std::optional<String> text = plainText(rest.substr(start, end - start));
        if (!text || text->isEmpty()) {
            return {};
        }
        texts.push_back(*text);
        start = end + 1;
    }
    return texts;
}

std::string joined(const std::vector<String>& texts) {
    std::string text;
    for (const String& one : texts) {
        text += (text.empty() ? "" : " or ") + printableValue(one);
    }
    return text;
}

struct Anchors {
    explicit Anchors(StringView pattern) : inside(withoutAnchors(pattern)) {
        hasStart = !pattern.empty() && pattern.front() == u'^';
        hasEnd = inside.size() + (hasStart ? 1 : 0) < pattern.size();
    }

    StringView inside;
    bool hasStart = false;
    bool hasEnd = false;
};

/// "^A.*$" is what "^A" is.
StringView withoutTail(StringView pattern) noexcept {
    for (const StringView tail : {StringView(u".*$"), StringView(u".*")}) {
        if (pattern.starts_with(u'^') && pattern.size() > tail.size() + 1 && pattern.ends_with(tail) &&
            !isLastEscaped(pattern.substr(0, pattern.size() - tail.size() + 1))) {
            return pattern.substr(0, pattern.size() - tail.size());
        }
    }
    return pattern;
}

}  // namespace

bool isReadAsText(StringView pattern) {
    const Anchors anchors(pattern);
    return anchors.hasStart == anchors.hasEnd && pattern.find(Regex::VRXRRANGE()) == StringView::npos &&
           plainText(anchors.inside).has_value();
}

std::string readablePattern(StringView whole) {
    const StringView pattern = withoutTail(whole);
    const Anchors anchors(pattern);
    if (const std::optional<String> text = plainText(anchors.inside)) {
        // Without any anchor it is most likely meant as the whole text, and compared so as well.
        const char* const before = anchors.hasStart == anchors.hasEnd ? ""
                                   : anchors.hasStart                 ? "begins with "
                                                                      : "ends with ";
        return before + printableValue(*text);
    }
    if (const std::optional<std::string> bounds = patternBounds(whole)) {
        return *bounds;
    }
    const Anchors all(whole);
    // Anchors around alternatives mean the whole value only where these stand in parentheses.
    const bool isWhole =
        all.hasStart && all.hasEnd && (all.inside.find(u'|') == StringView::npos || isGroup(all.inside));
    if (isWhole && isGroup(all.inside)) {
        if (const std::vector<String> texts = alternativesOf(all.inside); !texts.empty()) {
            return joined(texts);
        }
    }
    return "pattern " + printable(isWhole ? all.inside : whole);
}

}  // namespace vrx
