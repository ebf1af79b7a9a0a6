#include "libReport/lint/LintReport.h"
#include "libReport/text/JsonWriter.h"

namespace vrx {

namespace {

void writeCount(JsonWriter& json, std::string_view name, std::size_t count) {
    json.key(name).value(static_cast<std::int64_t>(count));
}

void writeFinding(JsonWriter& json, const LintFinding& finding) {
    json.beginObject();
    json.key("row").value(std::int64_t{finding.row} + 1);
    json.key("column").value(std::int64_t{finding.column} + 1);
    json.key("severity").value(nameOf(finding.severity));
    json.key("rule").value(finding.rule);
    json.key("message").value(std::string_view(finding.message()));
    json.endObject();
}

}  // namespace

std::string lintJson(const LintReport& report, const TextFormat&) {
    const LintFindings& findings = report.findings;
    JsonWriter json;
    json.beginObject();
    json.key("file").value(std::string_view(report.file));
    json.key("diagnostics").beginArray();
    for (const LintFinding& finding : findings.list()) {
        writeFinding(json, finding);
    }
    json.endArray();
    writeCount(json, "errors", findings.count(Severity::Error));
    writeCount(json, "warnings", findings.count(Severity::Warning));
    writeCount(json, "notes", findings.count(Severity::Note));
    json.endObject();
    return json.take();
}

}  // namespace vrx
