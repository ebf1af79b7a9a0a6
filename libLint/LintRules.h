#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vrx {

enum class Severity : std::uint8_t {
    Error,    ///< the script cannot do what it says
    Warning,  ///< it probably does something else than was meant
    Note,     ///< worth knowing
};

/// "error", "warning", "note".
std::string_view nameOf(Severity severity) noexcept;

/// Every rule, in the order of the table in docs/lint-rules.md.
enum class LintRule : std::uint8_t {
    UnknownElement,
    MisplacedElement,
    ErrorElement,
    PropertyOutsideDevice,
    UnknownAttribute,
    DeviceAttribute,
    FlagValue,
    IgnoredText,
    MissingType,
    UnknownType,
    UnknownCapability,
    LocatorPattern,
    DuplicateDevice,
    RepeatedDevice,
    MissingKey,
    ValueBesideChildren,
    ValueMissing,
    ElementAsValue,
    UnitsMissingInPattern,
    UnitsNotCompared,
    PatternSyntax,
    PatternExplodes,
    EmptyPattern,
    RangeSyntax,
    RangeSingleValue,
    NotUnderNot,
    EmptyOr,
    EmptyGroup,
    EmptyNotInDevice,
    EqualAlternatives,
    Combinations,
    ManyCombinations,
    OrInsidePart,
    NestedPart,
    FailOnExtraWithoutType,
    FailOnExtraInGroup,
    IgnoredTestset,
    NothingToCheck,
    ElementBeforeParts,
    MisnamedPart,
    BlankPart,
    PartNeedsNoDevice,
    MissingName,
    DuplicateName,
    InvalidUtf8,
    Count,
};

struct LintRuleInfo {
    std::string_view id;  ///< stable: people search for it and programs compare it
    Severity severity;
};

/// All rules, indexed by `LintRule`.
std::span<const LintRuleInfo> lintRules() noexcept;

inline const LintRuleInfo& infoOf(LintRule rule) noexcept { return lintRules()[static_cast<std::size_t>(rule)]; }

}  // namespace vrx
