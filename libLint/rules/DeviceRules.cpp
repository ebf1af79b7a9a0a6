#include "libLint/rules/DeviceRules.h"

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libInventory/script/ScriptElement.h"
#include "libLint/LintMemory.h"
#include "libLint/LintSubject.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/capabilities/CapabilityNames.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// Real locators are paths, addresses and numbers; these never stand in one.
bool looksLikePattern(StringView locator) noexcept {
    constexpr StringView SIGNS[] = {u".*", u".+", u"\\d+", u"[0-9]", u"VRXRRANGE"};
    return locator.starts_with(u'^') || locator.ends_with(u'$') ||
           std::ranges::any_of(SIGNS, [=](StringView sign) { return locator.find(sign) != StringView::npos; });
}

bool hasLocator(const XmlElement& device) noexcept {
    return !attributeOf(device, vocabulary::HW_LOCATOR).empty() || !attributeOf(device, vocabulary::OS_LOCATOR).empty();
}

bool isUnknown(StringView name) { return !name.empty() && CapabilityImp(name).isInvalid(); }

/// The type as a check reads it: that of a device in any letter case, that of a rule as it is written.
StringView typeOf(const LintSubject& subject) noexcept {
    return subject.kind == ElementKind::Device ? attributeOf(subject.element(), vocabulary::TYPE)
                                               : subject.element().Attribute(vocabulary::TYPE);
}

std::string nearestType(StringView name) { return printable(nearestName(trimmed(name), capabilityNames())); }

bool mustBeThere(const ScriptPlace& place) noexcept { return place.alternative == nullptr && !place.isUnderNot(); }

/// Whether the machine must not have it: alone in a `not` that no choice and no other `not` is around.
bool isForbidden(const LintSubject& subject) noexcept {
    const XmlNode* const parent = subject.element().Parent();
    const XmlElement* const around = parent != nullptr ? parent->ToElement() : nullptr;
    return subject.place.nots == 1 && subject.place.alternative == nullptr && around != nullptr &&
           vocabulary::kindOf(*around) == ElementKind::Not && around->FirstChildElement() == &subject.element() &&
           subject.element().NextSiblingElement() == nullptr;
}

}  // namespace

void missingType(const LintSubject& subject, const LintReporter& report) {
    if (typeOf(subject).empty()) {
        report.at(subject.element());
    }
}

void unknownType(const LintSubject& subject, const LintReporter& report) {
    if (isUnknown(typeOf(subject))) {
        report.at(subject.element(), printable(typeOf(subject))).suggestion = nearestType(typeOf(subject));
    }
}

void unknownCapability(const LintSubject& subject, const LintReporter& report) {
    const StringView capability = subject.element().Attribute(vocabulary::CAPABILITY);
    if (isUnknown(capability)) {
        report.at(subject.element(), printable(capability)).suggestion = nearestType(capability);
    }
}

/// Of an unknown type or capability another rule tells.
void ruleWithoutType(const LintSubject& subject, const LintReporter& report) {
    if (typeOf(subject).empty() && subject.element().Attribute(vocabulary::CAPABILITY).empty()) {
        report.at(subject.element());
    }
}

void ruleInGroup(const LintSubject& subject, const LintReporter& report) {
    if (!mustBeThere(subject.place)) {
        report.at(subject.element());
    }
}

void locatorPattern(const LintSubject& subject, const LintReporter& report) {
    if (looksLikePattern(subject.attribute->Value())) {
        report.at(subject.element(), printable(subject.attribute->Name()), printable(subject.attribute->Value()));
    }
}

void blankLocator(const LintSubject& subject, const LintReporter& report) {
    const StringView locator = subject.attribute->Value();
    if (trimmed(locator).size() != locator.size()) {
        report.at(subject.element(), printable(subject.attribute->Name()), printable(locator));
    }
}

void duplicateDevice(const LintSubject& subject, const LintReporter& report) {
    if (isForbidden(subject)) {
        subject.memory.asked.addForbidden(subject.element());
    }
    if (!mustBeThere(subject.place)) {
        return;
    }
    subject.memory.asked.addRequired(subject.element());
    const XmlElement* const first = subject.memory.devices.add(subject.element());
    if (first != nullptr && hasLocator(subject.element())) {
        report.at(subject.element(), printable(placeOf(first)));
    }
}

void repeatedDevice(const LintSubject& subject, const LintReporter& report) {
    for (const RepeatedDevices::Request& request : subject.memory.devices.requests()) {
        if (request.count > 1 && !hasLocator(*request.first)) {
            report.at(*request.first, request.count);
        }
    }
}

}  // namespace vrx::rules
