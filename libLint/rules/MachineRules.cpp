#include "libLint/rules/MachineRules.h"

#include <optional>

#include "libCommon/text/PrintableText.h"
#include "libInventory/script/ScriptElement.h"
#include "libLint/LintMachine.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/patterns/LiteralText.h"
#include "libLint/rules/patterns/RangeText.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// Whether a check fails unless what stands there is met. A parts list may hold parts that a machine does not have.
bool isNeeded(const LintSubject& subject) noexcept {
    const ScriptPlace& place = subject.place;
    return place.alternative == nullptr && !place.isUnderNot() && !subject.isInPartsList;
}

/// The devices that what holds a property speaks of.
CapabilityImp typeAround(const LintSubject& subject) {
    const XmlElement* const holder = subject.place.holder;
    if (holder == nullptr) {
        return CapabilityImp();
    }
    const CapabilityImp type(attributeOf(*holder, vocabulary::TYPE));
    return type.isInvalid() ? CapabilityImp(holder->Attribute(vocabulary::CAPABILITY)) : type;
}

/// A property that a rule for extra devices asks for: without it the rule is idle.
bool isInRule(const ScriptPlace& place) noexcept {
    return vocabulary::kindOf(*place.holder) == ElementKind::FailOnExtra && place.notsInHolder == 0;
}

/// The unit behind the number of a pattern that is a number or a range; no kind when it has none, empty for any other
/// pattern.
std::optional<UnitKind> kindAskedFor(StringView pattern) {
    const AnchoredText text(pattern);
    StringView unit;
    if (findRangeMarker(text.body) == 0) {
        const std::optional<RangeText> range = rangeAt(text.body, 0);
        unit = range ? text.body.substr(range->end) : u"?";
    } else if (isNumberText(text.body)) {
        const std::size_t blank = text.body.find(u' ');
        unit = blank == StringView::npos ? StringView() : text.body.substr(blank);
    } else {
        return std::nullopt;
    }
    if (unit.empty()) {
        return text.isToEnd ? std::optional(UnitKind::None) : std::nullopt;
    }
    const std::optional<Unit> known = Unit::lookupByString(unit);
    return known ? std::optional(known->type()) : std::nullopt;
}

}  // namespace

void typeNobodyHas(const LintSubject& subject, const LintReporter& report) {
    if (subject.machine == nullptr || !isNeeded(subject)) {
        return;
    }
    const StringView type = attributeOf(subject.element(), vocabulary::TYPE);
    if (!CapabilityImp(type).isInvalid() && !subject.machine->hasDevices(CapabilityImp(type))) {
        report.at(subject.element(), printable(type));
    }
}

void locatorNobodyHas(const LintSubject& subject, const LintReporter& report) {
    if (subject.machine == nullptr || !isNeeded(subject)) {
        return;
    }
    LintMachine& machine = *subject.machine;
    const bool isHardware = equalNoCase(subject.attribute->Name(), vocabulary::HW_LOCATOR);
    const String locator = askedFor(subject.element(), isHardware ? vocabulary::HW_LOCATOR : vocabulary::OS_LOCATOR);
    const CapabilityImp type(attributeOf(subject.element(), vocabulary::TYPE));
    const bool isKnown = isHardware ? machine.hasHwLocator(type, locator) : machine.hasOsLocator(type, locator);
    if (locator.isEmpty() || isKnown || type.isInvalid() || !machine.hasDevices(type)) {
        return;
    }
    report
        .at(subject.element(), printable(type.toString().view()), printable(subject.attribute->Name()),
            printable(locator.view()))
        .suggestion = isHardware ? machine.nearHwLocator(type, locator) : machine.nearOsLocator(type, locator);
}

void keyNobodyHas(const LintSubject& subject, const LintReporter& report) {
    const StringView key = subject.element().Attribute(vocabulary::KEY);
    if (subject.machine == nullptr || key.empty()) {
        return;
    }
    const CapabilityImp type = typeAround(subject);
    if (!subject.machine->hasDevices(type)) {
        return;
    }
    const LintMachine::KeyFacts& facts = subject.machine->factsOf(type, key);
    if (facts.isKnown || !(isNeeded(subject) || isInRule(subject.place) || !facts.near.empty())) {
        return;
    }
    std::string near;
    for (std::size_t i = 1; i < facts.near.size(); ++i) {
        near += (i == 1 ? "; others near it are \"" : "\", \"") + facts.near[i];
    }
    near += near.empty() ? "" : "\"";
    report.at(subject.element(), printable(type.toString().view()), printable(key), near).suggestion =
        facts.near.empty() ? std::string() : facts.near.front();
}

void unitsOfAnotherKind(const LintSubject& subject, const LintReporter& report) {
    if (subject.machine == nullptr || subject.place.alternative != nullptr) {
        return;
    }
    const std::optional<UnitKind> asked = kindAskedFor(subject.pattern->text);
    const CapabilityImp type = typeAround(subject);
    if (!asked || !subject.machine->hasDevices(type)) {
        return;
    }
    const StringView key = subject.element().Attribute(vocabulary::KEY);
    const LintMachine::KeyFacts& facts = subject.machine->factsOf(type, key);
    if (facts.isKnown && !facts.kinds.has(*asked)) {
        report.at(subject.element(), printable(type.toString().view()), printable(key),
                  printable(subject.pattern->text));
    }
}

}  // namespace vrx::rules
