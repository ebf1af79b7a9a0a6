#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/xml/XmlElement.h"

/// What lint finds, as data.
///
///     for (const LintFinding& finding : lint.findings().list()) {
///         if (finding.severity == Severity::Error) {
///             log(finding.row + 1, finding.rule, finding.message());
///         }
///     }
namespace vrx {

enum class Severity : std::uint8_t {
    Error,    ///< a mistake: a check would pass it over or could never meet it, so the script is refused
    Warning,  ///< it probably does something else than was meant
    Note,     ///< worth knowing
};

/// "error", "warning", "note".
std::string_view nameOf(Severity severity) noexcept;

/// One mistake. Its texts are printable UTF-8.
struct LintFinding {
    std::string_view rule;  ///< the rule's id, as docs/lint-rules.md lists it; programs may compare it
    Severity severity;
    std::uint32_t row;          ///< of the element's `<`, 0-based as the document counts
    std::uint32_t column;       ///< of the same, in UTF-16 code units, 0-based
    const XmlElement* element;  ///< in the document that was looked through; null for damage of the file itself
    std::string text;           ///< a sentence that says what is wrong and what to do
    std::string suggestion;     ///< the name that was probably meant; empty when none comes near

    /// The text and, when there is one, the suggestion: what people read.
    std::string message() const;
};

/// The findings of one file.
class LintFindings {
public:
    /// Adds a finding and hands it out, to be completed; valid until the next one is added.
    LintFinding& add(LintFinding finding);

    /// Adds those of another list.
    void add(LintFindings others);

    /// Brings them into document order; those of one place stay in the order in which they were found.
    void sort();

    const std::vector<LintFinding>& list() const noexcept { return m_list; }
    std::size_t count(Severity severity) const noexcept;

private:
    std::vector<LintFinding> m_list;
};

}  // namespace vrx
