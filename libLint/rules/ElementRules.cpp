#include "libLint/rules/ElementRules.h"

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libLint/LintSubject.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

bool stands(const LintSubject& subject, ElementKind kind) noexcept {
    return subject.kind == kind && (subject.role == LintRole::InScript || subject.role == LintRole::InDevice);
}

/// What a check knows, but does not look at between devices or inside one.
bool isMisplaced(const LintSubject& subject) noexcept {
    switch (subject.kind) {
        case ElementKind::Value: return subject.role == LintRole::InScript || subject.role == LintRole::InDevice;
        case ElementKind::InventoryCheck:
        case ElementKind::Part:
        case ElementKind::Device:
        case ElementKind::FailOnExtra: return subject.role == LintRole::InDevice;
        default: return false;
    }
}

}  // namespace

void unknownElement(const LintSubject& subject, const LintReporter& report) {
    if (stands(subject, ElementKind::Unknown)) {
        const StringView name = subject.element().Name();
        report.at(subject.element(), tagOf(subject.element())).suggestion =
            printable(nearestName(name, vocabulary::elementNames()));
    }
}

void nestedRoot(const LintSubject& subject, const LintReporter& report) {
    if (subject.role == LintRole::InScript && subject.kind == ElementKind::InventoryCheck) {
        report.at(subject.element());
    }
}

void misplacedElement(const LintSubject& subject, const LintReporter& report) {
    if (isMisplaced(subject)) {
        report.at(subject.element(), tagOf(subject.element()),
                  subject.role == LintRole::InDevice ? "inside a <device>" : "between devices");
    }
}

void errorElement(const LintSubject& subject, const LintReporter& report) {
    if (subject.kind == ElementKind::Error && subject.role != LintRole::BeforeParts) {
        report.at(subject.element());
    }
}

void propertyOutsideDevice(const LintSubject& subject, const LintReporter& report) {
    if (subject.role == LintRole::InScript && subject.kind == ElementKind::Property) {
        report.at(subject.element());
    }
}

void ignoredTestset(const LintSubject& subject, const LintReporter& report) {
    if (stands(subject, ElementKind::TestSet)) {
        report.at(subject.element());
    }
}

}  // namespace vrx::rules
