#pragma once

#include <string>

#include "libLint/LintFindings.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// For people and for grep: "file:row:column: severity: message [rule-id]" on one line each, then the counts.
std::string lintText(const LintFindings& findings, const std::string& file, const TextFormat& format);

/// {"file", "diagnostics": [{"row", "column", "severity", "rule", "message"}], "errors", "warnings", "notes"}.
std::string lintJson(const LintFindings& findings, const std::string& file);

}  // namespace vrx
