/// What stands behind a range is taken for a unit only where the pattern is nothing but a number and one plain word:
/// "^VRXRRANGE[1-2] Ghz$", but not "^Fan VRXRRANGE[1-6] rear$". There a word that is no unit is compared as text, so
/// nothing is converted and a value in another unit never fits.

#include "libLint/rules/patterns/RangeRules.h"

#include <algorithm>
#include <optional>

#include "libCommon/text/EditDistance.h"
#include "libCommon/text/PrintableText.h"
#include "libCommon/values/Unit.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/patterns/LiteralText.h"
#include "libLint/rules/patterns/RangeText.h"
#include "libRegex/Regex.h"

namespace vrx::rules {

namespace {

bool isLetter(char16_t unit) noexcept { return static_cast<unsigned>(unit | 0x20) - u'a' < 26; }

constexpr std::size_t SHORTEST_MARKER = 5;

/// Whether the word was meant to be the marker. `rest` is what follows it.
bool isMeantAsMarker(StringView word, StringView rest) {
    constexpr std::size_t LONGEST = 12;
    if (word.size() < SHORTEST_MARKER || word.size() > LONGEST) {
        return false;
    }
    const StringView marker = Regex::VRXRRANGE();
    if (word == marker) {
        return false;
    }
    const bool isInBrackets = opensWithBounds(rest);
    if (isInBrackets && equalNoCase(word.substr(word.size() - 5), u"range")) {
        return true;
    }
    const std::size_t farthest = isInBrackets ? 3 : 2;
    const bool isOfItsLength = word.size() + farthest >= marker.size() && word.size() <= marker.size() + farthest;
    return isOfItsLength && equalNoCase(word.substr(0, 1), u"v") &&
           editDistance(foldCase(word), foldCase(marker)) <= farthest;
}

/// Whether the pattern stands for one text, with all signs escaped: that of a generated script. There a bracket behind
/// the marker is that of a value that happens to be a range.
bool isEscapedText(StringView pattern, std::size_t behindMarker) {
    String literal;
    return pattern.substr(behindMarker).starts_with(u"\\[") && Regex::isAnchoredLiteral(pattern, literal);
}

/// Whether nothing but anchors and the like stands before the range: the value begins with the number.
bool beginsWithRange(StringView pattern, std::size_t marker) noexcept {
    if (marker == 0) {
        return true;
    }
    const bool isEscaped = marker > 1 && pattern[marker - 2] == u'\\';
    return !isEscaped && StringView(u"^|(:").find(pattern[marker - 1]) != StringView::npos;
}

/// What stands behind a range that begins a value, to the end of the value.
struct UnitText {
    StringView text;  ///< with its blanks
    StringView word;  ///< without
    bool isEndOfPattern = false;
};

std::optional<UnitText> unitTextAt(const LintSubject& subject) {
    const StringView pattern = subject.pattern->text;
    const std::optional<RangeText> range = rangeAt(pattern, subject.marker);
    if (!range || !beginsWithRange(pattern, subject.marker)) {
        return std::nullopt;
    }
    const StringView rest = pattern.substr(range->end);
    const StringView text = rest.substr(0, rest.find_first_of(u"$|)"));
    const UnitText unit{text, trimmed(text), text.size() == rest.size() || rest.substr(text.size()) == u"$"};
    const bool isPlain = text.find_first_of(u"\\[](){}*+?.^\t") == StringView::npos;
    return isPlain && !unit.word.empty() ? std::optional(unit) : std::nullopt;
}

/// The unit that the word is in other letters; empty when there is none. Tries them all, of short words.
String unitInOtherLetters(StringView word) {
    constexpr std::size_t LONGEST = 6;
    if (word.size() > LONGEST ||
        !std::ranges::all_of(word, [](char16_t unit) { return isLetter(unit) || unit == u'/'; })) {
        return String();
    }
    for (unsigned variant = 0; variant < (1U << word.size()); ++variant) {
        std::u16string written(word);
        for (std::size_t i = 0; i < written.size(); ++i) {
            if (isLetter(written[i])) {
                written[i] = static_cast<char16_t>((variant >> i & 1U) != 0 ? written[i] & ~0x20 : written[i] | 0x20);
            }
        }
        if (const std::optional<Unit> unit = Unit::lookupByString(written)) {
            return String(equalNoCase(unit->symbol(), word) ? unit->symbol() : StringView(written));
        }
    }
    return String();
}

/// Names hold words of all kinds; values with a number and one word are measurements.
bool isValue(const LintSubject& subject) noexcept { return subject.kind != vocabulary::ElementKind::Device; }

bool isWord(StringView text) noexcept {
    return text.find(u' ') == StringView::npos && std::ranges::none_of(text, isDigit);
}

std::size_t endOfWord(StringView text, std::size_t at) noexcept {
    while (at < text.size() && isLetter(text[at])) {
        ++at;
    }
    return at;
}

StringView wordBefore(StringView text, std::size_t end) noexcept {
    std::size_t begin = end;
    while (begin > 0 && isLetter(text[begin - 1])) {
        --begin;
    }
    return text.substr(begin, end - begin);
}

void lookAtWord(const LintSubject& subject, StringView word, std::size_t end, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    if (isMeantAsMarker(word, pattern.substr(end)) && !isEscapedText(pattern, end)) {
        report.at(subject.element(), printable(word), printable(pattern)).suggestion =
            printable(StringView(Regex::VRXRRANGE()));
    }
}

}  // namespace

// Words that are too short need not be come across.
void rangeWord(const LintSubject& subject, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    for (std::size_t at = SHORTEST_MARKER - 1; at < pattern.size(); at += SHORTEST_MARKER) {
        if (isLetter(pattern[at])) {
            const std::size_t end = endOfWord(pattern, at);
            lookAtWord(subject, wordBefore(pattern, end), end, report);
            at = end;
        }
    }
}

void rangeSyntax(const LintSubject& subject, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    const bool isText = isEscapedText(pattern, subject.marker + Regex::VRXRRANGE().size());
    if (!isText && !rangeAt(pattern, subject.marker)) {
        report.at(subject.element(), printable(StringView(Regex::VRXRRANGE())), subject.marker + 1,
                  printable(subject.pattern->text));
    }
}

void rangeUnitBlank(const LintSubject& subject, const LintReporter& report) {
    const std::optional<UnitText> unit = unitTextAt(subject);
    const bool isOneBlank = unit && unit->text.size() == unit->word.size() + 1 && unit->text.starts_with(u' ');
    if (unit && unit->isEndOfPattern && !isOneBlank && Unit::lookupByString(unit->word)) {
        report.at(subject.element(), printable(subject.pattern->text),
                  unit->text == unit->word ? "none between them" : "more");
    }
}

void rangeUnit(const LintSubject& subject, const LintReporter& report) {
    const std::optional<UnitText> unit = unitTextAt(subject);
    if (!unit || Unit::lookupByString(unit->word)) {
        return;
    }
    const String meant = unitInOtherLetters(unit->word);
    const bool standsLikeOne = isValue(subject) && unit->text.starts_with(u' ') && isWord(unit->word);
    if (!meant.isEmpty() || standsLikeOne) {
        report.at(subject.element(), printable(unit->word)).suggestion = printable(meant.view());
    }
}

/// Generated ranges around 0 are [0-0].
void rangeSingleValue(const LintSubject& subject, const LintReporter& report) {
    const std::optional<RangeText> range = rangeAt(subject.pattern->text, subject.marker);
    if (range && range->low == range->high && range->low != 0) {
        report.at(subject.element(), printable(subject.pattern->text), printable(range->lowText));
    }
}

}  // namespace vrx::rules
