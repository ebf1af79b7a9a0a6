#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

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

/// What an element is there for.
enum class LintRole : std::uint8_t {
    Root,         ///< the `inventory-check` of a script
    ListedPart,   ///< a part of a parts list, whatever its name
    BeforeParts,  ///< what a parts list holds before its first part
    InScript,     ///< it stands between devices
    InDevice,     ///< it describes a device, or what a `fail-on-extra` covers
    Entry,        ///< it stands in a `property`
};

/// Kinds or roles of elements, as a set.
using LintSet = std::uint16_t;

/// The set of these kinds, or of these roles.
template <class... Members>
constexpr LintSet setOf(Members... members) noexcept {
    return static_cast<LintSet>((0U | ... | (1U << static_cast<unsigned>(members))));
}

inline constexpr LintSet ANY = 0xFFFF;

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
    LintSet kinds = ANY;  ///< it is asked about elements of these kinds alone,
    LintSet roles = ANY;  ///< and of them about those in these roles
};

/// All rules, by stage; those of one stage are asked in this order.
std::span<const LintRule> lintRules() noexcept;

/// Rules by what they are asked about, so that the others cost nothing: a script of many elements has millions of
/// questions.
class LintRuleIndex {
public:
    /// All rules, or only those for mistakes.
    static const LintRuleIndex& get(bool findsAll);

    /// Those that are asked in a stage about elements of that kind in that role.
    std::span<const LintRule* const> rules(LintStage stage, vocabulary::ElementKind kind,
                                           LintRole role) const noexcept {
        const std::size_t at =
            cell(static_cast<unsigned>(stage), static_cast<unsigned>(kind), static_cast<unsigned>(role));
        return {m_rules.data() + m_starts[at], m_rules.data() + m_starts[at + 1]};
    }

private:
    static constexpr unsigned STAGES = static_cast<unsigned>(LintStage::End) + 1;
    static constexpr unsigned KINDS = static_cast<unsigned>(vocabulary::ElementKind::Unknown) + 1;
    static constexpr unsigned ROLES = static_cast<unsigned>(LintRole::Entry) + 1;

    explicit LintRuleIndex(bool findsAll);

    static constexpr std::size_t cell(unsigned stage, unsigned kind, unsigned role) noexcept {
        return (std::size_t{stage} * KINDS + kind) * ROLES + role;
    }

    std::vector<const LintRule*> m_rules;  // those of one cell after those of another
    std::array<std::uint16_t, std::size_t{STAGES} * KINDS * ROLES + 1> m_starts{};
};

}  // namespace vrx
