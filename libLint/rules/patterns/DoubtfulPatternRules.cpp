#include "libLint/rules/patterns/DoubtfulPatternRules.h"

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/patterns/LiteralText.h"
#include "libLint/rules/patterns/RangeText.h"

namespace vrx::rules {

namespace {

/// The sign of a comparison that opens the text, before a number; empty when there is none.
StringView comparisonAt(StringView text) noexcept {
    constexpr StringView SIGNS[] = {u">=", u"<=", u"=>", u"=<", u"==",     u"!=",
                                    u"<>", u">",  u"<",  u"=",  u"\u2265", u"\u2264"};
    for (const StringView sign : SIGNS) {
        if (text.starts_with(sign)) {
            const StringView rest = trimmed(text.substr(sign.size()));
            return !rest.empty() && isDigit(rest[0]) ? sign : StringView();
        }
    }
    return {};
}

}  // namespace

void unescapedSignInText(const LintSubject& subject, const LintReporter& report) {
    const LintPattern& pattern = *subject.pattern;
    const AnchoredText text(pattern.text);
    if (const std::optional<std::size_t> sign = unescapedSign(text.body); sign && pattern.problem.isEmpty()) {
        report.at(subject.element(), printable(text.body.substr(*sign, 1)), *sign + (text.isFromStart ? 2 : 1),
                  printable(pattern.text));
    }
}

void missingAnchor(const LintSubject& subject, const LintReporter& report) {
    const AnchoredText text(subject.pattern->text);
    if (!isNumberText(text.body)) {
        return;
    }
    const bool mayGoOn = !text.isToEnd && isDigit(text.body.back());
    if (!text.isFromStart || mayGoOn) {
        const std::string body = printable(text.body);
        report.at(subject.element(), printable(subject.pattern->text),
                  (text.isFromStart ? "" : "1") + body + (mayGoOn && text.isFromStart ? "0" : ""), body);
    }
}

void blankAtAnchor(const LintSubject& subject, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    const StringView text = trimmed(pattern);
    const bool isBefore = text.starts_with(u'^') && text.front() != pattern.front();
    const bool isBehind = AnchoredText(text).isToEnd && text.back() != pattern.back();
    if (isBefore || isBehind) {
        report.at(subject.element(), isBefore ? "before ^" : "behind $", printable(pattern));
    }
}

void comparisonSign(const LintSubject& subject, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    if (const StringView sign = comparisonAt(trimmed(AnchoredText(trimmed(pattern)).body)); !sign.empty()) {
        report.at(subject.element(), printable(sign), printable(pattern));
    }
}

void boundsWithoutMarker(const LintSubject& subject, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    if (opensWithBounds(AnchoredText(pattern).body)) {
        report.at(subject.element(), printable(pattern));
    }
}

/// Generated scripts leave a bar as it is, in names and entries.
void looseAlternatives(const LintSubject& subject, const LintReporter& report) {
    const AnchoredText whole(subject.pattern->text);
    if (!whole.isFromStart || !whole.isToEnd) {
        return;
    }
    const std::vector<StringView> alternatives = alternativesOf(subject.pattern->text);
    if (alternatives.size() > 1 && !AnchoredText(alternatives.front()).isToEnd &&
        !AnchoredText(alternatives.back()).isFromStart) {
        report.at(subject.element(), printable(subject.pattern->text), printable(whole.body));
    }
}

void severalRanges(const LintSubject& subject, const LintReporter& report) {
    const StringView pattern = subject.pattern->text;
    int count = 0;
    for (std::size_t at = findRangeMarker(pattern); at != StringView::npos; at = findRangeMarker(pattern, at + 1)) {
        count += rangeAt(pattern, at) ? 1 : 0;
    }
    if (count > 1) {
        report.at(subject.element(), printable(pattern));
    }
}

}  // namespace vrx::rules
