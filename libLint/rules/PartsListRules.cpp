#include "libLint/rules/PartsListRules.h"

#include "libCommon/text/PrintableText.h"
#include "libInventory/script/PartsList.h"
#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/XmlChildren.h"
#include "libLint/LintMemory.h"
#include "libLint/LintSubject.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

bool holdsNeededDevice(const XmlElement& part) {
    for (const XmlElement* const child : childElements(part)) {
        if (needsDevice(*child)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void elementBeforeParts(const LintSubject& subject, const LintReporter& report) {
    if (!describesDevices(subject.element())) {
        report.at(subject.element(), tagOf(subject.element()));
    }
}

void partBeforeParts(const LintSubject& subject, const LintReporter& report) {
    if (describesDevices(subject.element())) {
        report.at(subject.element(), tagOf(subject.element()));
    }
}

void misnamedPart(const LintSubject& subject, const LintReporter& report) {
    if (vocabulary::kindOf(subject.element()) != ElementKind::Part) {
        report.at(subject.element(), tagOf(subject.element()));
    }
}

void missingName(const LintSubject& subject, const LintReporter& report) {
    if (subject.element().Attribute(vocabulary::NAME).empty()) {
        report.at(subject.element());
    }
}

void duplicateName(const LintSubject& subject, const LintReporter& report) {
    const StringView name = subject.element().Attribute(vocabulary::NAME);
    if (name.empty()) {
        return;
    }
    const auto [entry, isNew] = subject.memory.parts.try_emplace(String(name), &subject.element());
    if (!isNew) {
        report.at(subject.element(), printable(name), printable(placeOf(entry->second)));
    }
}

void blankPart(const LintSubject& subject, const LintReporter& report) {
    if (!describesDevices(subject.element())) {
        report.at(subject.element());
    }
}

void partNeedsNoDevice(const LintSubject& subject, const LintReporter& report) {
    if (describesDevices(subject.element()) && !holdsNeededDevice(subject.element())) {
        report.at(subject.element());
    }
}

}  // namespace vrx::rules
