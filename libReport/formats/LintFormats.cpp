/// What lint found, for CI servers and spreadsheets: errors and warnings are failures, as its exit status has them.

#include <fmt/format.h>

#include "libReport/formats/JunitSuite.h"
#include "libReport/lint/LintReport.h"
#include "libReport/text/CsvTable.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

std::string lintPlace(const LintFinding& finding) {
    return fmt::format("{}:{}", std::uint64_t{finding.row} + 1, std::uint64_t{finding.column} + 1);
}

}  // namespace

std::string lintJunit(const LintReport& report, const TextFormat&) {
    JunitSuite suite;
    suite.name = inputName(report.file);
    suite.started = report.started;
    for (const LintFinding& finding : report.findings.list()) {
        const bool isNote = finding.severity == Severity::Note;
        suite.cases.push_back({fmt::format("{} {} #{}", finding.rule, lintPlace(finding), suite.cases.size() + 1),
                               isNote ? JunitSuite::Outcome::Skipped : JunitSuite::Outcome::Failure,
                               std::string(nameOf(finding.severity)),
                               {finding.message(), suite.name + ":" + lintPlace(finding)}});
    }
    if (suite.cases.empty()) {
        suite.cases.push_back({"lint", JunitSuite::Outcome::Passed, {}, {}});
    }
    return junitText(suite);
}

std::string lintCsv(const LintReport& report, const TextFormat&) {
    CsvTable table;
    table.addRow({"file", "row", "column", "severity", "rule", "message", "suggestion"});
    for (const LintFinding& finding : report.findings.list()) {
        table.addRow({inputName(report.file), std::to_string(finding.row + 1), std::to_string(finding.column + 1),
                      nameOf(finding.severity), finding.rule, finding.message(), finding.suggestion});
    }
    return table.text();
}

}  // namespace vrx
