#pragma once

#include "libLint/LintRules.h"

/// The type and the locators of a `device`, what a `fail-on-extra` covers, and devices that are asked for twice.
///
/// Each element needs a device of its own. For equal elements with a locator that is hardly meant, because a locator
/// names one device; equal elements without one are how several devices of a kind are asked for.
namespace vrx::rules {

LintCheck missingType;
LintCheck unknownType;
LintCheck unknownCapability;
LintCheck ruleWithoutType;
LintCheck ruleInGroup;
LintCheck locatorPattern;
LintCheck blankLocator;
LintCheck duplicateDevice;
LintCheck repeatedDevice;

}  // namespace vrx::rules
