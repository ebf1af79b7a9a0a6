#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "libCommon/xml/XmlElement.h"
#include "libLint/LintRules.h"

namespace vrx {

/// One mistake: its place (0-based, as the document holds it), its rule, and a printable sentence that says what to do.
struct LintFinding {
    std::uint32_t row;
    std::uint32_t column;
    LintRule rule;
    std::string message;
};

/// The findings of one file.
class LintFindings {
public:
    void add(LintRule rule, const XmlElement& element, std::string message) {
        add(rule, element.Row(), element.Column(), std::move(message));
    }
    void add(LintRule rule, std::uint32_t row, std::uint32_t column, std::string message) {
        m_list.push_back({row, column, rule, std::move(message)});
    }

    /// Brings them into document order; those of one place stay in the order in which they were found.
    void sort();

    const std::vector<LintFinding>& list() const noexcept { return m_list; }
    std::size_t count(Severity severity) const noexcept;

private:
    std::vector<LintFinding> m_list;
};

/// "<name>", fit for a message.
std::string tagOf(const XmlElement& element);

}  // namespace vrx
