#include "libLint/rules/PropertyRules.h"

#include "libCommon/text/PrintableText.h"
#include "libInventory/script/XmlChildren.h"
#include "libLint/LintSubject.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

bool mentions(const XmlElement& element, StringView text) {
    return element.Attribute(vocabulary::VALUE).find(text) != StringView::npos;
}

bool patternsMention(const XmlElement& property, StringView text) {
    for (const XmlElement* const entry : childElements(property)) {
        if (vocabulary::kindOf(*entry) != ElementKind::Error && !mentions(*entry, text)) {
            return false;
        }
    }
    return hasEntries(property) || mentions(property, text);
}

/// Whether the property is compared with something that leaves its units out.
bool leavesUnitsOut(const XmlElement& property, StringView units) {
    const bool hasPattern = hasEntries(property) || property.FindAttribute(vocabulary::VALUE) != nullptr;
    return hasPattern && !patternsMention(property, units);
}

StringView unitsOf(const LintSubject& subject) noexcept { return subject.element().Attribute(vocabulary::UNITS); }

}  // namespace

void missingKey(const LintSubject& subject, const LintReporter& report) {
    if (trimmed(subject.element().Attribute(vocabulary::KEY)).empty()) {
        report.at(subject.element());
    }
}

void blankKey(const LintSubject& subject, const LintReporter& report) {
    const StringView key = subject.element().Attribute(vocabulary::KEY);
    const StringView text = trimmed(key);
    if (!text.empty() && text.size() != key.size()) {
        report.at(subject.element(), printable(key));
    }
}

void valueBesideChildren(const LintSubject& subject, const LintReporter& report) {
    if (hasEntries(subject.element()) && subject.element().FindAttribute(vocabulary::VALUE) != nullptr) {
        report.at(subject.element());
    }
}

void elementAsValue(const LintSubject& subject, const LintReporter& report) {
    const bool isMeant = subject.kind == ElementKind::Value || subject.kind == ElementKind::Error;
    if (!isMeant) {
        report.at(subject.element(), tagOf(subject.element()));
    }
}

void elementInEntry(const LintSubject& subject, const LintReporter& report) {
    const XmlElement* const inner = subject.element().FirstChildElement();
    if (inner != nullptr) {
        report.at(*inner, tagOf(*inner), tagOf(subject.element()));
    }
}

void valueMissing(const LintSubject& subject, const LintReporter& report) {
    if (subject.element().FindAttribute(vocabulary::VALUE) == nullptr) {
        report.at(subject.element(), tagOf(subject.element()));
    }
}

void unitsMissingInPattern(const LintSubject& subject, const LintReporter& report) {
    const StringView units = unitsOf(subject);
    if (!units.empty() && leavesUnitsOut(subject.element(), units)) {
        report.at(subject.element(), printable(units));
    }
}

void unitsNotCompared(const LintSubject& subject, const LintReporter& report) {
    const StringView units = unitsOf(subject);
    if (!units.empty() && !leavesUnitsOut(subject.element(), units)) {
        report.at(subject.element(), printable(units));
    }
}

}  // namespace vrx::rules
