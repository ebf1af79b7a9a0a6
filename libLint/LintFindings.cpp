#include "libLint/LintFindings.h"

#include <algorithm>
#include <tuple>

#include "libCommon/text/PrintableText.h"

namespace vrx {

void LintFindings::sort() {
    std::stable_sort(m_list.begin(), m_list.end(), [](const LintFinding& a, const LintFinding& b) {
        return std::tie(a.row, a.column) < std::tie(b.row, b.column);
    });
}

std::size_t LintFindings::count(Severity severity) const noexcept {
    return static_cast<std::size_t>(std::ranges::count_if(
        m_list, [severity](const LintFinding& finding) { return infoOf(finding.rule).severity == severity; }));
}

std::string tagOf(const XmlElement& element) { return "<" + printable(element.Name()) + ">"; }

}  // namespace vrx
