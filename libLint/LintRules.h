#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "libLint/LintFindings.h"

namespace vrx {

class LintReporter;
struct LintSubject;

/// What a rule does: looks at the subject and, where it breaks the rule, reports it.
using LintCheck = void(const LintSubject& subject, const LintReporter& report);

/// What a rule is asked about. The walk goes through these in this order, for every element that it comes to; the
/// subject holds what the stage is about.
enum class LintStage : std::uint8_t {
    File,       ///< the file, before anything in it
    Element,    ///< the element, as it stands there; what is passed over is asked about nothing else
    Attribute,  ///< each attribute
    Content,    ///< what the element says
    Locator,    ///< each attribute that is compared as it stands
    Pattern,    ///< each attribute that is compared as a pattern
    Range,      ///< each marker of a range in such a pattern
    Whole,      ///< the element again, beside others
    End,        ///< the script or listed part, once everything in it has been looked at
};

/// One rule. Several may share an id and severity: forms of one mistake that are told in different words.
///
///     for (const LintRule& rule : lintRules()) {
///         std::cout << rule.id << ": " << rule.text << '\n';
///     }
struct LintRule {
    std::string_view id;  ///< stable: people search for it and programs compare it
    Severity severity;
    LintStage stage;
    const char* text;  ///< a format string for what the rule reports
    LintCheck* check;
};

/// All rules, by stage; those of one stage are asked in this order.
std::span<const LintRule> lintRules() noexcept;
std::span<const LintRule> lintRules(LintStage stage) noexcept;

}  // namespace vrx
