#include "libLint/rules/GroupRules.h"

#include <limits>
#include <unordered_map>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/PrintableText.h"
#include "libInventory/script/OrInsidePart.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/XmlChildren.h"
#include "libLint/LintMemory.h"
#include "libLint/LintSubject.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// More than this take a while, and are seldom meant.
constexpr std::uint64_t MANY_COMBINATIONS = 10'000;

bool isEmpty(const LintSubject& subject) noexcept { return subject.element().FirstChildElement() == nullptr; }

/// A rule of extra devices is tested by itself, so a `not` around it does not count in it.
bool isUnderNot(const ScriptPlace& place) noexcept {
    const bool isInRule = place.holder != nullptr && vocabulary::kindOf(*place.holder) == ElementKind::FailOnExtra;
    return (isInRule ? place.notsInHolder : place.nots) > 0;
}

void reportNotUnderNot(const LintSubject& subject, const LintReporter& report) {
    if (isUnderNot(subject.place)) {
        report.at(subject.element());
    }
}

}  // namespace

void notUnderNot(const LintSubject& subject, const LintReporter& report) { reportNotUnderNot(subject, report); }

void notUnderNotInDevice(const LintSubject& subject, const LintReporter& report) { reportNotUnderNot(subject, report); }

void emptyOr(const LintSubject& subject, const LintReporter& report) {
    if (isEmpty(subject)) {
        report.at(subject.element());
    }
}

void emptyOrInDevice(const LintSubject& subject, const LintReporter& report) {
    if (isEmpty(subject)) {
        report.at(subject.element());
    }
}

void emptyGroup(const LintSubject& subject, const LintReporter& report) {
    if (isEmpty(subject)) {
        report.at(subject.element(), tagOf(subject.element()));
    }
}

void emptyAndInDevice(const LintSubject& subject, const LintReporter& report) {
    if (isEmpty(subject)) {
        report.at(subject.element());
    }
}

void emptyNotInDevice(const LintSubject& subject, const LintReporter& report) {
    if (isEmpty(subject)) {
        report.at(subject.element());
    }
}

void equalAlternatives(const LintSubject& subject, const LintReporter& report) {
    const XmlElement* const first = subject.element().FirstChildElement();
    if (first == nullptr || first->NextSiblingElement() == nullptr) {
        return;
    }
    std::unordered_map<String, const XmlElement*, HashFunc<String>> seen;
    for (const XmlElement* const child : childElements(subject.element())) {
        const auto [entry, isNew] = seen.try_emplace(child->toString(), child);
        if (!isNew) {
            report.at(*child, printable(placeOf(entry->second)));
        }
    }
}

void orInsidePart(const LintSubject& subject, const LintReporter& report) {
    if (isUndecidableOr(subject.place)) {
        report.at(subject.element());
    }
}

void nestedPart(const LintSubject& subject, const LintReporter& report) {
    if (subject.place.part != nullptr) {
        report.at(subject.element());
    }
}

void nothingToCheck(const LintSubject& subject, const LintReporter& report) {
    if (subject.memory.askedFor == 0) {
        report.at(subject.element());
    }
}

void combinations(const LintSubject& subject, const LintReporter& report) {
    const std::uint64_t count = subject.memory.combinations;
    if (count > 1 && count <= MANY_COMBINATIONS) {
        report.at(subject.element(), count);
    }
}

void manyCombinations(const LintSubject& subject, const LintReporter& report) {
    const std::uint64_t count = subject.memory.combinations;
    if (count > MANY_COMBINATIONS) {
        const bool isMost = count == std::numeric_limits<std::uint64_t>::max();
        report.at(subject.element(), isMost ? "more than" : "up to", count);
    }
}

}  // namespace vrx::rules
