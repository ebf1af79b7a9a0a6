#include "libLint/rules/patterns/PatternRules.h"

#include "libCommon/text/PrintableText.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/patterns/PatternGrowth.h"

namespace vrx::rules {

void emptyPattern(const LintSubject& subject, const LintReporter& report) {
    if (subject.pattern->text.empty()) {
        report.at(subject.element());
    }
}

void patternSyntax(const LintSubject& subject, const LintReporter& report) {
    const LintPattern& pattern = *subject.pattern;
    if (!pattern.problem.isEmpty()) {
        report.at(subject.element(), printable(pattern.text), printable(pattern.problem.view()),
                  pattern.problemOffset + 1);
    }
}

void patternExplodes(const LintSubject& subject, const LintReporter& report) {
    const LintPattern& pattern = *subject.pattern;
    if (pattern.problem.isEmpty() && canExplode(pattern.text)) {
        report.at(subject.element(), printable(pattern.text));
    }
}

}  // namespace vrx::rules
