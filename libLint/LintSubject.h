#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "libCommon/text/String.h"
#include "libInventory/script/ScriptWalk.h"
#include "libLint/LintFindings.h"
#include "libLint/LintRules.h"

namespace vrx {

struct LintMemory;
class LintMachine;

/// A pattern as it is compared: decoded.
struct LintPattern {
    StringView text;
    String problem;                 ///< why it does not compile; empty when it does
    std::size_t problemOffset = 0;  ///< the character of the problem, 0-based
};

/// What a rule is asked about.
struct LintSubject {
    const XmlElement& element() const noexcept { return *place.element; }

    const ScriptPlace& place;
    LintRole role;
    vocabulary::ElementKind kind;  ///< what it is taken for there: a listed part for a `part`, an entry for a `value`
    LintMemory& memory;
    const XmlAttribute* attribute = nullptr;  ///< in the stages Attribute to Range
    const LintPattern* pattern = nullptr;     ///< in the stages Pattern and Range
    const Utf8Damage* damage = nullptr;       ///< in the stage File: how the bytes were damaged, if it is known
    std::size_t marker = 0;                   ///< where the range begins in the pattern, in the stage Range
    LintMachine* machine = nullptr;           ///< what the script is compared with; null when there is none
    bool isInPartsList = false;
};

/// Where a rule leaves what it finds.
class LintReporter {
public:
    LintReporter(const LintRule& rule, LintFindings& findings) noexcept : m_rule(rule), m_findings(findings) {}

    /// Reports the element, in the words of the rule with these arguments put in. A suggestion may be added to what is
    /// returned.
    template <class... Arguments>
    LintFinding& at(const XmlElement& element, const Arguments&... arguments) const {
        LintFinding& finding = atPlace(element.Row(), element.Column(), arguments...);
        finding.element = &element;
        return finding;
    }

    /// Reports a place in the file, 0-based, that is no element.
    template <class... Arguments>
    LintFinding& atPlace(std::uint32_t row, std::uint32_t column, const Arguments&... arguments) const {
        return m_findings.add({m_rule.id,
                               m_rule.severity,
                               row,
                               column,
                               nullptr,
                               fmt::vformat(m_rule.text, fmt::make_format_args(arguments...)),
                               {}});
    }

private:
    const LintRule& m_rule;
    LintFindings& m_findings;
};

/// Whether the property has children that count as entries of its value; what a check has left in it does not.
bool hasEntries(const XmlElement& property) noexcept;

/// "<name>", fit for a message.
std::string tagOf(const XmlElement& element);

}  // namespace vrx
