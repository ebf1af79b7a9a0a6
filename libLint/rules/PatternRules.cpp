/// Whether a range is one is asked of the matcher itself: a well-formed range matches its own low bound, and the marker
/// without one is text, which no number matches.

#include "libLint/rules/PatternRules.h"

#include <optional>

#include "libCommon/text/PrintableText.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/PatternGrowth.h"
#include "libRegex/Regex.h"

namespace vrx::rules {

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

std::optional<Bounds> rangeAt(const LintSubject& subject) {
    const StringView marker = Regex::VRXRRANGE();
    const StringView rest = subject.pattern->text.view().substr(subject.marker + marker.size());
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

}  // namespace

void emptyPattern(const LintSubject& subject, const LintReporter& report) {
    if (subject.pattern->text.isEmpty()) {
        report.at(subject.element());
    }
}

void patternSyntax(const LintSubject& subject, const LintReporter& report) {
    const LintPattern& pattern = *subject.pattern;
    if (!pattern.problem.isEmpty()) {
        report.at(subject.element(), printable(pattern.text.view()), printable(pattern.problem.view()),
                  pattern.problemOffset + 1);
    }
}

void patternExplodes(const LintSubject& subject, const LintReporter& report) {
    const LintPattern& pattern = *subject.pattern;
    if (pattern.problem.isEmpty() && canExplode(pattern.text)) {
        report.at(subject.element(), printable(pattern.text.view()));
    }
}

void rangeSyntax(const LintSubject& subject, const LintReporter& report) {
    if (!rangeAt(subject)) {
        report.at(subject.element(), printable(StringView(Regex::VRXRRANGE())), subject.marker + 1,
                  printable(subject.pattern->text.view()));
    }
}

/// Generated ranges around 0 are [0-0].
void rangeSingleValue(const LintSubject& subject, const LintReporter& report) {
    const std::optional<Bounds> bounds = rangeAt(subject);
    if (bounds && bounds->low == bounds->high && bounds->low != 0) {
        report.at(subject.element(), printable(subject.pattern->text.view()), printable(bounds->lowText));
    }
}

}  // namespace vrx::rules
