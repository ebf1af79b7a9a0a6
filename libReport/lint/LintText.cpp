#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"
#include "libReport/lint/LintReport.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

Style styleOf(Severity severity) noexcept {
    switch (severity) {
        case Severity::Error: return Style::Bad;
        case Severity::Warning: return Style::Caution;
        case Severity::Note: break;
    }
    return Style::Bold;
}

}  // namespace

std::string lintText(const LintReport& report, const TextFormat& format) {
    const LintFindings& findings = report.findings;
    const std::string name = printable(std::string_view(report.file));
    std::string out;
    for (const LintFinding& finding : findings.list()) {
        fmt::format_to(std::back_inserter(out), "{}:{}:{}: {}: {} {}\n", name, std::uint64_t{finding.row} + 1,
                       std::uint64_t{finding.column} + 1,
                       styled(nameOf(finding.severity), styleOf(finding.severity), format.colour), finding.message(),
                       styled(fmt::format("[{}]", finding.rule), Style::Dim, format.colour));
    }
    return out + fmt::format("{}: {}, {}, {}\n", name, counted(findings.count(Severity::Error), "error"),
                             counted(findings.count(Severity::Warning), "warning"),
                             counted(findings.count(Severity::Note), "note"));
}

ReportWriters<LintReport> lintWriters() {
    static constexpr ReportWriter<LintReport> WRITERS[] = {
        {"text", lintText}, {"json", lintJson}, {"sarif", lintSarif}, {"junit", lintJunit}, {"csv", lintCsv}};
    return WRITERS;
}

}  // namespace vrx
