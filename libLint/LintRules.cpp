#include "libLint/LintRules.h"

#include <algorithm>
#include <cstddef>

#include "libInventory/script/OrInsidePart.h"
#include "libLint/rules/AssignmentRules.h"
#include "libLint/rules/AttributeRules.h"
#include "libLint/rules/ContradictionRules.h"
#include "libLint/rules/DeviceRules.h"
#include "libLint/rules/ElementRules.h"
#include "libLint/rules/FileRules.h"
#include "libLint/rules/GroupRules.h"
#include "libLint/rules/MachineRules.h"
#include "libLint/rules/PartsListRules.h"
#include "libLint/rules/PropertyRules.h"
#include "libLint/rules/patterns/DoubtfulPatternRules.h"
#include "libLint/rules/patterns/PatternRules.h"
#include "libLint/rules/patterns/RangeRules.h"

namespace vrx {

namespace {

using enum Severity;
using Kind = vocabulary::ElementKind;
using Role = LintRole;
using Stage = LintStage;

/// By stage; those of one stage in the order in which people are told of them.
constexpr LintRule RULES[] = {
    {"invalid-utf8", Warning, Stage::File,
     "{} invalid UTF-8 sequence(s), the first one here, each read as U+FFFD; save the file as UTF-8",
     rules::invalidUtf8},

    {"element-before-parts", Warning, Stage::Element, "{} before the first <part> is passed over; remove it",
     rules::elementBeforeParts, ANY, setOf(Role::BeforeParts)},
    {"part-before-parts", Error, Stage::Element,
     "{} before the first <part> is passed over with the devices in it; write <part>", rules::partBeforeParts, ANY,
     setOf(Role::BeforeParts)},
    {"misnamed-part", Error, Stage::Element,
     "{} counts as a part, as everything behind the first part does, but nothing in it is compared; write <part>, or "
     "move it before the first part",
     rules::misnamedPart, ANY, setOf(Role::ListedPart)},
    {"unknown-element", Error, Stage::Element,
     "unknown element {}: it and everything in it is passed over; correct or remove it", rules::unknownElement,
     setOf(Kind::Unknown), setOf(Role::InScript, Role::InDevice)},
    {"nested-root", Warning, Stage::Element, "<inventory-check> is the root and counts as an <and> here; write <and>",
     rules::nestedRoot, setOf(Kind::InventoryCheck), setOf(Role::InScript)},
    {"misplaced-element", Error, Stage::Element, "{} {} is passed over with everything in it; move it out",
     rules::misplacedElement, setOf(Kind::Value, Kind::InventoryCheck, Kind::Part, Kind::Device, Kind::FailOnExtra),
     setOf(Role::InScript, Role::InDevice)},
    {"error-element", Warning, Stage::Element,
     "<error> is left over from an annotated script; check the original script, or remove it", rules::errorElement,
     setOf(Kind::Error), setOf(Role::Root, Role::ListedPart, Role::InScript, Role::InDevice, Role::Entry)},
    {"property-outside-device", Error, Stage::Element,
     "a <property> outside a <device> is passed over; move it into the device that it describes",
     rules::propertyOutsideDevice, setOf(Kind::Property), setOf(Role::InScript)},
    {"ignored-testset", Note, Stage::Element, "a <testset> is passed over with everything in it; it may be left out",
     rules::ignoredTestset, setOf(Kind::TestSet), setOf(Role::InScript, Role::InDevice)},
    {"element-as-value", Error, Stage::Element,
     "inside a <property>, {} counts as one more entry of the value; write <value>, or close the <property> before it",
     rules::elementAsValue, ANY, setOf(Role::Entry)},
    {"not-under-not", Warning, Stage::Element,
     "a <not> inside a <not> is reported by every check; write what you mean without both", rules::notUnderNotInDevice,
     setOf(Kind::Not), setOf(Role::InDevice)},

    {"unknown-attribute", Error, Stage::Attribute, "nothing reads the attribute \"{}\" of {}; remove it",
     rules::unknownAttribute, ANY & ~setOf(Kind::Device)},
    {"device-attribute", Error, Stage::Attribute,
     "a device has no attribute \"{}\", and with it the device is never found", rules::deviceAttribute,
     setOf(Kind::Device)},
    {"repeated-type", Error, Stage::Attribute, "{}=\"{}\" is passed over beside {}=\"{}\"; remove one of them",
     rules::repeatedType, setOf(Kind::Device)},

    {"ignored-text", Error, Stage::Content, "nothing reads the text \"{0}\" in {1}; write it as value=\"{0}\"",
     rules::textAsValue, setOf(Kind::Property, Kind::Value)},
    {"ignored-text", Error, Stage::Content,
     "nothing reads the text \"{}\" in {}; remove it or write it as an attribute", rules::ignoredText},
    {"flag-value", Error, Stage::Content, "{}=\"{}\" means off; write true or false", rules::flagValue,
     setOf(Kind::InventoryCheck), setOf(Role::Root)},
    {"empty-or", Error, Stage::Content,
     "an <or> without alternatives is satisfied in the first combination only; give it some, or remove it",
     rules::emptyOr, setOf(Kind::Or), setOf(Role::InScript)},
    {"empty-or", Error, Stage::Content, "an <or> without alternatives is never satisfied; give it some, or remove it",
     rules::emptyOrInDevice, setOf(Kind::Or), setOf(Role::InDevice)},
    {"empty-group", Warning, Stage::Content, "an empty {} asks for nothing; remove it", rules::emptyGroup,
     setOf(Kind::InventoryCheck, Kind::And, Kind::Not, Kind::Part), setOf(Role::InScript)},
    {"empty-group", Warning, Stage::Content, "an empty <and> asks for nothing; remove it", rules::emptyAndInDevice,
     setOf(Kind::And), setOf(Role::InDevice)},
    {"empty-not-in-device", Error, Stage::Content,
     "an empty <not> inside a <device> is never satisfied; put in what is forbidden, or remove it",
     rules::emptyNotInDevice, setOf(Kind::Not), setOf(Role::InDevice)},
    {"nested-part", Warning, Stage::Content,
     "a <part> inside a <part> cannot be told apart from it; write one after the other, or an <and>", rules::nestedPart,
     setOf(Kind::Part)},
    {"not-under-not", Warning, Stage::Content,
     "a <not> inside a <not> is reported by every check; write what you mean without both", rules::notUnderNot,
     setOf(Kind::Not), setOf(Role::InScript)},
    {"or-inside-part", Error, Stage::Content, OR_INSIDE_PART_REASON, rules::orInsidePart, setOf(Kind::Or)},
    {"equal-alternatives", Warning, Stage::Content, "this alternative equals the one at {}; remove one",
     rules::equalAlternatives, setOf(Kind::Or)},
    {"missing-name", Warning, Stage::Content, "a part needs a name, which tells it from others; add one",
     rules::missingName, ANY, setOf(Role::ListedPart)},
    {"duplicate-name", Warning, Stage::Content,
     "\"{}\" is the name of the part at {} too, and parts of one name are the same part; give each its own",
     rules::duplicateName, ANY, setOf(Role::ListedPart)},
    {"blank-part", Warning, Stage::Content,
     "a blank part, from which no parts can be generated; add the devices that make it up", rules::blankPart, ANY,
     setOf(Role::ListedPart)},
    {"part-needs-no-device", Warning, Stage::Content,
     "a part that needs no device fits every machine any number of times; add a <device> outside <not>",
     rules::partNeedsNoDevice, ANY, setOf(Role::ListedPart)},
    {"missing-type", Error, Stage::Content,
     "a device needs a type, and without one it is never found; add one (docs/format-inventory-script.md lists them)",
     rules::missingType, setOf(Kind::Device)},
    {"unknown-type", Error, Stage::Content,
     "there is no device type \"{}\"; write one of the known types (docs/format-inventory-script.md lists them)",
     rules::unknownType, setOf(Kind::Device, Kind::FailOnExtra)},
    {"unknown-capability", Error, Stage::Content,
     "there is no capability \"{}\"; write one of the known types (docs/format-inventory-script.md lists them)",
     rules::unknownCapability, setOf(Kind::FailOnExtra)},
    {"not-around-several", Warning, Stage::Content,
     "a <not> around {} elements forbids only all of them together; write a <not> around each, or an <and> inside",
     rules::notAroundSeveral, setOf(Kind::Not)},
    {"blank-ends", Warning, Stage::Content,
     "the key \"{}\" begins or ends with a blank, and keys are compared as they stand; remove it", rules::blankKey,
     setOf(Kind::Property)},
    {"fail-on-extra-without-type", Error, Stage::Content,
     "this rule covers nothing, and a check passes without a word about it; give it a known type or capability",
     rules::ruleWithoutType, setOf(Kind::FailOnExtra)},
    {"machine-type", Warning, Stage::Content, "the machine has no {}; write another type, or remove the element",
     rules::typeNobodyHas, setOf(Kind::Device)},
    {"machine-key", Warning, Stage::Content, "no {} of the machine has a property \"{}\"{}; correct or remove it",
     rules::keyNobodyHas, setOf(Kind::Property), setOf(Role::InDevice)},
    {"missing-key", Error, Stage::Content, "a property needs a key; add the name of the property", rules::missingKey,
     setOf(Kind::Property)},
    {"value-beside-children", Error, Stage::Content,
     "the \"value\" attribute is not compared beside children; remove it, or the children", rules::valueBesideChildren,
     setOf(Kind::Property)},
    {"misplaced-element", Error, Stage::Content, "nothing reads {} inside {}; move it out", rules::elementInEntry, ANY,
     setOf(Role::Entry)},
    {"value-missing", Warning, Stage::Content,
     "{} has no \"value\" attribute and accepts every entry; write the pattern into one", rules::valueMissing, ANY,
     setOf(Role::Entry)},

    {"locator-pattern", Warning, Stage::Locator,
     "{}=\"{}\" looks like a pattern, but locators are compared as they stand; write the whole locator, or compare a "
     "property",
     rules::locatorPattern},

    {"blank-ends", Warning, Stage::Locator,
     "{}=\"{}\" begins or ends with a blank, and locators are compared as they stand; remove it", rules::blankLocator},

    {"machine-locator", Warning, Stage::Locator, "no {} of the machine has {}=\"{}\"; write one that is there",
     rules::locatorNobodyHas},

    {"empty-pattern", Warning, Stage::Pattern,
     "an empty pattern accepts every text; write ^$ for an empty one, or leave the attribute out", rules::emptyPattern},
    {"pattern-syntax", Warning, Stage::Pattern,
     "the pattern \"{}\" does not compile, so it is only compared as plain text: {} at character {}; correct it, or "
     "put a backslash before what is meant literally",
     rules::patternSyntax},
    {"pattern-explodes", Warning, Stage::Pattern,
     "the pattern \"{}\" repeats a repetition and may be given up on long values; repeat only once, as in (a|b)+ for "
     "(a+|b+)+",
     rules::patternExplodes},

    {"unescaped-sign", Warning, Stage::Pattern,
     "\"{}\" at character {} of \"{}\" is a sign of patterns, and the rest looks like plain text; put a backslash "
     "before it",
     rules::unescapedSignInText},
    {"missing-anchor", Warning, Stage::Pattern, "\"{}\" fits {} too; write ^{}$ for this number alone",
     rules::missingAnchor},
    {"blank-at-anchor", Warning, Stage::Pattern,
     "the blank {} in \"{}\" is compared too, and no value has one there; remove it", rules::blankAtAnchor},
    {"comparison-sign", Warning, Stage::Pattern,
     "\"{}\" in \"{}\" compares nothing, it is looked for as text; write a range, as in ^VRXRRANGE[16-1000]$",
     rules::comparisonSign},
    {"bounds-without-marker", Warning, Stage::Pattern,
     "\"{}\" stands for one of the characters in the brackets, not for a number; write VRXRRANGE before them",
     rules::boundsWithoutMarker},
    {"loose-alternatives", Warning, Stage::Pattern,
     "in \"{}\" the ^ belongs to the first alternative only and the $ to the last; write ^({})$",
     rules::looseAlternatives, setOf(Kind::Property)},
    {"several-ranges", Warning, Stage::Pattern,
     "\"{}\" has several ranges, and where a unit stands behind the last, it decides alone; write an <or> of "
     "properties",
     rules::severalRanges},
    {"machine-units", Warning, Stage::Pattern,
     "no {} of the machine has \"{}\" in units of the kind of \"{}\"; write those that it has",
     rules::unitsOfAnotherKind, setOf(Kind::Property)},
    {"range-word", Error, Stage::Pattern, "\"{}\" in \"{}\" is no range; write VRXRRANGE[low-high], in capitals",
     rules::rangeWord},

    {"range-syntax", Error, Stage::Range,
     "{} at character {} of \"{}\" is compared as plain text; write [low-high] behind it, two decimal numbers without "
     "blanks",
     rules::rangeSyntax},
    {"range-unit-blank", Error, Stage::Range,
     "a range and its unit are one blank apart, but \"{}\" has {}; write the unit behind one blank, or in parentheses "
     "if it is plain text",
     rules::rangeUnitBlank},
    {"range-unit", Error, Stage::Range,
     "there is no unit \"{}\"; write one of the known units (docs/patterns.md lists them), or put it in parentheses if "
     "it is plain text",
     rules::rangeUnit},
    {"range-single-value", Warning, Stage::Range, "the range in \"{}\" holds nothing but {}; widen its bounds",
     rules::rangeSingleValue},

    {"units-missing-in-pattern", Warning, Stage::Whole,
     "units=\"{}\" is not compared, and the value does not say it; write the units into the value, as in ^32 GB$",
     rules::unitsMissingInPattern, setOf(Kind::Property)},
    {"units-not-compared", Note, Stage::Whole, "units=\"{}\" is not compared; it may be left out",
     rules::unitsNotCompared, setOf(Kind::Property)},
    {"contradicting-properties", Warning, Stage::Whole,
     "no value of \"{}\" is both this and what is asked for at {}; remove one, or write an <or>",
     rules::excludingProperties, setOf(Kind::Device, Kind::FailOnExtra)},
    {"contradicting-properties", Warning, Stage::Whole,
     "this test of \"{}\" is forbidden here and asked for at {}; remove one", rules::requiredAndForbiddenProperty,
     setOf(Kind::Device, Kind::FailOnExtra)},
    {"duplicate-device", Warning, Stage::Whole,
     "the same device is asked for at {}, and the script needs two of it; remove one", rules::duplicateDevice,
     setOf(Kind::Device)},
    {"fail-on-extra-in-group", Warning, Stage::Whole,
     "this rule is in force whichever alternative is chosen, and also under a <not>; move it to the end of the script",
     rules::ruleInGroup, setOf(Kind::FailOnExtra)},

    {"nothing-to-check", Warning, Stage::End,
     "the script asks for nothing, and a check of it is undetermined; add a <device> or a <fail-on-extra>",
     rules::nothingToCheck, ANY, setOf(Role::Root)},
    {"many-combinations", Warning, Stage::End,
     "the alternatives make {} {} combinations, and a check takes long when many of them want the same devices; where "
     "only properties differ, write the <or> inside the <device>, which costs nothing",
     rules::manyCombinations, ANY, setOf(Role::Root)},
    {"combinations", Note, Stage::End, "the alternatives make up to {} combinations", rules::combinations, ANY,
     setOf(Role::Root)},
    {"forbidden-and-required", Warning, Stage::End,
     "this forbids what the device element at {} asks for; remove one, or say more in either",
     rules::requiredAndForbiddenDevice},
    {"wide-before-narrow", Warning, Stage::End,
     "this asks for less than the element at {}, and may be given the only device that fits there, unless devices are "
     "assigned exactly; put it behind that one",
     rules::wideBeforeNarrow},
    {"exact-assignment", Warning, Stage::End,
     "{} only by exact assignment, not with check --plain; put elements that ask for more before those that ask for "
     "less",
     rules::assignedExactly},
    {"repeated-device", Note, Stage::End, "this device is asked for {0} times, which needs {0} such devices",
     rules::repeatedDevice},
};
static_assert(std::ranges::is_sorted(RULES, {}, &LintRule::stage));

}  // namespace

std::span<const LintRule> lintRules() noexcept { return RULES; }

const LintRuleIndex& LintRuleIndex::get(bool findsAll) {
    if (findsAll) {
        static const LintRuleIndex ALL(true);
        return ALL;
    }
    static const LintRuleIndex OF_MISTAKES(false);
    return OF_MISTAKES;
}

LintRuleIndex::LintRuleIndex(bool findsAll) {
    for (unsigned stage = 0; stage < STAGES; ++stage) {
        const auto asked = std::ranges::equal_range(RULES, static_cast<Stage>(stage), {}, &LintRule::stage);
        for (unsigned kind = 0; kind < KINDS; ++kind) {
            for (unsigned role = 0; role < ROLES; ++role) {
                for (const LintRule& rule : asked) {
                    const bool isOfPlace = (rule.kinds >> kind & 1U) != 0 && (rule.roles >> role & 1U) != 0;
                    if (isOfPlace && (findsAll || rule.severity == Error)) {
                        m_rules.push_back(&rule);
                    }
                }
                m_starts[cell(stage, kind, role) + 1] = static_cast<std::uint16_t>(m_rules.size());
            }
        }
    }
}

}  // namespace vrx
