#include "libLint/rules/ElementRules.h"

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libLint/LintSubject.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// What a check knows, but does not look at between devices or inside one.
bool isMisplaced(const LintSubject& subject) noexcept {
    return subject.kind == ElementKind::Value || subject.role == LintRole::InDevice;
}

}  // namespace

void unknownElement(const LintSubject& subject, const LintReporter& report) {
    const StringView name = subject.element().Name();
    report.at(subject.element(), tagOf(subject.element())).suggestion =
        printable(nearestName(name, vocabulary::elementNames()));
}

void nestedRoot(const LintSubject& subject, const LintReporter& report) { report.at(subject.element()); }

void misplacedElement(const LintSubject& subject, const LintReporter& report) {
    if (isMisplaced(subject)) {
        report.at(subject.element(), tagOf(subject.element()),
                  subject.role == LintRole::InDevice ? "inside a <device>" : "between devices");
    }
}

void errorElement(const LintSubject& subject, const LintReporter& report) { report.at(subject.element()); }

void propertyOutsideDevice(const LintSubject& subject, const LintReporter& report) { report.at(subject.element()); }

void ignoredTestset(const LintSubject& subject, const LintReporter& report) { report.at(subject.element()); }

}  // namespace vrx::rules
