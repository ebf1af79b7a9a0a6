#pragma once

#include <string>

#include "libCommon/time/DateTime.h"
#include "libLint/LintFindings.h"
#include "libReport/ReportWriter.h"

namespace vrx {

/// The mistakes in one file. The findings are borrowed.
///
///     Lint lint;
///     lint.run(bytes);
///     std::cout << lintText({"script.xml", lint.findings()}, TextFormat());
struct LintReport {
    std::string file;  ///< its path as given
    const LintFindings& findings;
    DateTime started{};
};

/// text: for people and for grep, "file:row:column: severity: message [rule-id]" on one line each, then the counts.
/// json: {"file", "diagnostics": [{"row", "column", "severity", "rule", "message", "suggestion"}], "errors",
/// "warnings", "notes"}. junit, csv and sarif: docs/formats.md.
ReportWriters<LintReport> lintWriters();

std::string lintText(const LintReport& report, const TextFormat& format);
std::string lintJson(const LintReport& report, const TextFormat& format);
std::string lintJunit(const LintReport& report, const TextFormat& format);
std::string lintCsv(const LintReport& report, const TextFormat& format);
std::string lintSarif(const LintReport& report, const TextFormat& format);

}  // namespace vrx
