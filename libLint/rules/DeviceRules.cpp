#include "libLint/rules/DeviceRules.h"

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libInventory/script/ScriptElement.h"
#include "libLint/rules/PatternRules.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

namespace {

constexpr const char* WHERE_TYPES_ARE = "docs/format-inventory-script.md lists them";

void checkType(const XmlElement& device, LintFindings& findings) {
    const StringView type = attributeOf(device, u"type");
    if (type.empty()) {
        findings.add(
            LintRule::MissingType, device,
            fmt::format("a device needs a type, and without one it is never found; add one ({})", WHERE_TYPES_ARE));
    } else if (CapabilityImp(type).isInvalid()) {
        findings.add(LintRule::UnknownType, device,
                     fmt::format("there is no device type \"{}\"; write one of the known types ({})", printable(type),
                                 WHERE_TYPES_ARE));
    }
}

/// Real locators are paths, addresses and numbers; these never stand in one.
bool looksLikePattern(StringView locator) noexcept {
    constexpr StringView SIGNS[] = {u".*", u".+", u"\\d+", u"[0-9]", u"VRXRRANGE"};
    return locator.starts_with(u'^') || locator.ends_with(u'$') ||
           std::ranges::any_of(SIGNS, [=](StringView sign) { return locator.find(sign) != StringView::npos; });
}

void checkLocator(const XmlElement& device, const XmlAttribute& locator, LintFindings& findings) {
    if (looksLikePattern(locator.Value())) {
        findings.add(LintRule::LocatorPattern, device,
                     fmt::format("{}=\"{}\" looks like a pattern, but locators are compared as they stand; write the "
                                 "whole locator, or compare a property",
                                 printable(locator.Name()), printable(locator.Value())));
    }
}

}  // namespace

void checkDeviceAttributes(const XmlElement& device, LintFindings& findings) {
    checkType(device, findings);
    for (const XmlAttribute& attribute : device.Attributes()) {
        if (equalNoCase(attribute.Name(), u"name")) {
            checkPattern(device, attribute.Value(), findings);
        } else if (equalNoCase(attribute.Name(), u"hwlocator") || equalNoCase(attribute.Name(), u"oslocator")) {
            checkLocator(device, attribute, findings);
        }
    }
}

void checkExtraDeviceRule(const XmlElement& rule, LintFindings& findings) {
    const StringView type = rule.Attribute(u"type");
    const StringView capability = rule.Attribute(u"capability");
    const bool isTypeInvalid = CapabilityImp(type).isInvalid();
    const bool isCapabilityInvalid = CapabilityImp(capability).isInvalid();
    if (isTypeInvalid && !type.empty()) {
        findings.add(LintRule::UnknownType, rule,
                     fmt::format("there is no device type \"{}\"; write one of the known types ({})", printable(type),
                                 WHERE_TYPES_ARE));
    }
    if (isCapabilityInvalid && !capability.empty()) {
        findings.add(LintRule::UnknownCapability, rule,
                     fmt::format("there is no capability \"{}\"; write one of the known types ({})",
                                 printable(capability), WHERE_TYPES_ARE));
    }
    if (isTypeInvalid && isCapabilityInvalid) {
        findings.add(LintRule::FailOnExtraWithoutType, rule,
                     "this rule covers nothing, and a check passes without a word about it; give it a known type or "
                     "capability");
    }
}

}  // namespace vrx
