#include "libReport/text/ReadablePattern.h"

#include <optional>

#include "libCommon/text/NumberText.h"
#include "libCommon/text/PrintableText.h"
#include "libRegex/Regex.h"

namespace vrx {

namespace {

constexpr StringView METACHARACTERS = u"^$.*+?()[]{}|";

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

/// Reads "VRXRRANGE[low-high]" at the start of `rest` and takes it away. A tolerance around a negative number is
/// written with the high bound first; people read the low one first.
std::optional<String> takeRange(StringView& rest) {
    const StringView marker = Regex::VRXRRANGE();
    if (!rest.starts_with(marker) || rest.size() <= marker.size() || rest[marker.size()] != u'[') {
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
        if (isEscape ? isWordCharacter(rest[1]) : METACHARACTERS.find(rest.front()) != StringView::npos) {
            return std::nullopt;
        }
        rest.remove_prefix(isEscape ? 1 : 0);
        text.append(rest.front());
        rest.remove_prefix(1);
    }
    return text;
}

}  // namespace

std::string readablePattern(StringView pattern) {
    const StringView inside = withoutAnchors(pattern);
    const bool hasStart = !pattern.empty() && pattern.front() == u'^';
    const bool hasEnd = inside.size() + (hasStart ? 1 : 0) < pattern.size();
    if (const std::optional<String> text = plainText(inside)) {
        // Without any anchor it is most likely meant as the whole text, and compared so as well.
        const char* const before = hasStart == hasEnd ? "" : hasStart ? "begins with " : "ends with ";
        return before + printableValue(*text);
    }
    // One anchor alone, or anchors around alternatives, mean more than "the whole value".
    const bool isWhole = hasStart && hasEnd && inside.find(u'|') == StringView::npos;
    return "pattern " + printable(isWhole ? inside : pattern);
}

}  // namespace vrx
