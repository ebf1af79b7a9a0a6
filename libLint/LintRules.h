#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "libInventory/script/ScriptVocabulary.h"
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

/// Kinds of elements, as a set.
using LintKinds = std::uint16_t;

/// The set of these kinds.
template <class... Kinds>
constexpr LintKinds kindsOf(Kinds... kinds) noexcept {
    return static_cast<LintKinds>((0U | ... | (1U << static_cast<unsigned>(kinds))));
}

inline constexpr LintKinds ANY_KIND = 0xFFFF;

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
    LintKinds kinds = ANY_KIND;  ///< it is asked about these alone
};

/// All rules, by stage; those of one stage are asked in this order.
std::span<const LintRule> lintRules() noexcept;

/// Those that are asked in a stage about elements of that kind: all, or only those for mistakes.
std::span<const LintRule* const> lintRules(LintStage stage, vocabulary::ElementKind kind, bool findsAll);

}  // namespace vrx
