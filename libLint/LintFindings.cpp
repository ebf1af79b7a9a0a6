#include "libLint/LintFindings.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace vrx {

std::string_view nameOf(Severity severity) noexcept {
    switch (severity) {
        case Severity::Error: return "error";
        case Severity::Warning: return "warning";
        case Severity::Note: break;
    }
    return "note";
}

std::string LintFinding::message() const {
    return suggestion.empty() ? text : text + "; did you mean \"" + suggestion + "\"?";
}

LintFinding& LintFindings::add(LintFinding finding) { return m_list.emplace_back(std::move(finding)); }

void LintFindings::add(LintFindings others) {
    m_list.insert(m_list.end(), std::make_move_iterator(others.m_list.begin()),
                  std::make_move_iterator(others.m_list.end()));
}

void LintFindings::sort() {
    std::stable_sort(m_list.begin(), m_list.end(), [](const LintFinding& a, const LintFinding& b) {
        return std::tie(a.row, a.column) < std::tie(b.row, b.column);
    });
}

std::size_t LintFindings::count(Severity severity) const noexcept {
    return static_cast<std::size_t>(
        std::ranges::count_if(m_list, [severity](const LintFinding& finding) { return finding.severity == severity; }));
}

}  // namespace vrx
