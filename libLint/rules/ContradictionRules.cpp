#include "libLint/rules/ContradictionRules.h"

#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/PrintableText.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/XmlChildren.h"
#include "libLint/LintMemory.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/patterns/RangeText.h"
#include "libRegex/Regex.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// The tests directly in an element and in the `and` elements of it: all of them must hold. An element under several
/// `and` elements is found by walking, so that no nesting is too deep.
std::vector<const XmlElement*> jointTests(const XmlElement& element, ElementKind kind) {
    std::vector<const XmlElement*> tests;
    std::vector<const XmlElement*> groups{&element};
    while (!groups.empty()) {
        const XmlElement* const group = groups.back();
        groups.pop_back();
        for (const XmlElement* const child : childElements(*group)) {
            if (vocabulary::kindOf(*child) == kind) {
                tests.push_back(child);
            } else if (vocabulary::kindOf(*child) == ElementKind::And) {
                groups.push_back(child);
            }
        }
    }
    return tests;
}

/// Whether no text that the pattern accepts can be the literal one. Letter case never decides.
bool excludesLiteral(const String& pattern, const String& literal) {
    return !Inventory::matchString(pattern, literal) && !Regex::rangeMatches(pattern, literal, 0);
}

/// The range of a pattern that is nothing but one, and what stands behind it.
std::optional<std::pair<RangeText, StringView>> onlyRange(StringView pattern) {
    pattern.remove_prefix(pattern.starts_with(u'^') ? 1 : 0);
    const std::optional<RangeText> range = findRangeMarker(pattern) == 0 ? rangeAt(pattern, 0) : std::nullopt;
    return range ? std::optional(std::pair(*range, pattern.substr(range->end))) : std::nullopt;
}

bool excludeEachOther(const String& a, const String& b) {
    String literal;
    if (Regex::isAnchoredLiteral(a, literal)) {
        return excludesLiteral(b, literal);
    }
    if (Regex::isAnchoredLiteral(b, literal)) {
        return excludesLiteral(a, literal);
    }
    const auto left = onlyRange(a);
    const auto right = onlyRange(b);
    return left && right && left->second == right->second && areDisjoint(left->first, right->first);
}

/// The pattern of a property that is compared as a whole.
std::optional<String> onlyPattern(const XmlElement& property) {
    const bool isWhole = !hasEntries(property) && property.FindAttribute(vocabulary::VALUE) != nullptr;
    return isWhole ? std::optional(askedValues(property).front()) : std::nullopt;
}

}  // namespace

void excludingProperties(const LintSubject& subject, const LintReporter& report) {
    std::unordered_map<String, const XmlElement*, HashFunc<String>> firsts;
    for (const XmlElement* const property : jointTests(subject.element(), ElementKind::Property)) {
        const std::optional<String> pattern = onlyPattern(*property);
        const StringView key = property->Attribute(vocabulary::KEY);
        if (!pattern || key.empty()) {
            continue;
        }
        const auto [first, isNew] = firsts.try_emplace(String(key), property);
        if (!isNew && excludeEachOther(*onlyPattern(*first->second), *pattern)) {
            report.at(*property, printable(key), printable(placeOf(first->second)));
        }
    }
}

void requiredAndForbiddenProperty(const LintSubject& subject, const LintReporter& report) {
    const std::vector<const XmlElement*> nots = jointTests(subject.element(), ElementKind::Not);
    if (nots.empty()) {
        return;
    }
    std::unordered_map<String, const XmlElement*, HashFunc<String>> required;
    for (const XmlElement* const property : jointTests(subject.element(), ElementKind::Property)) {
        required.try_emplace(property->toString(), property);
    }
    for (const XmlElement* const each : nots) {
        const XmlElement* const inner = each->FirstChildElement();
        if (inner == nullptr || inner->NextSiblingElement() != nullptr) {
            continue;
        }
        if (const auto found = required.find(inner->toString()); found != required.end()) {
            report.at(*inner, printable(inner->Attribute(vocabulary::KEY)), printable(placeOf(found->second)));
        }
    }
}

void requiredAndForbiddenDevice(const LintSubject& subject, const LintReporter& report) {
    for (const auto& [forbidden, required] : subject.memory.asked.forbiddenAndRequired()) {
        report.at(*forbidden, printable(placeOf(required)));
    }
}

void wideBeforeNarrow(const LintSubject& subject, const LintReporter& report) {
    for (const auto& [wide, narrow] : subject.memory.asked.wideBeforeNarrow()) {
        report.at(*wide, printable(placeOf(narrow)));
    }
}

void notAroundSeveral(const LintSubject& subject, const LintReporter& report) {
    std::size_t count = 0;
    for (const XmlElement* const child : childElements(subject.element())) {
        const ElementKind kind = vocabulary::kindOf(*child);
        count += kind == ElementKind::Error || kind == ElementKind::TestSet || kind == ElementKind::Unknown ? 0U : 1U;
    }
    if (count > 1) {
        report.at(subject.element(), count);
    }
}

}  // namespace vrx::rules
