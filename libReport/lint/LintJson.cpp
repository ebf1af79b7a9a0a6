#include "libReport/json/JsonWriter.h"
#include "libReport/lint/LintReport.h"
#include "libReport/lint/ScriptMistakes.h"

namespace vrx {

namespace {

void writeCount(JsonWriter& json, std::string_view name, std::size_t count) {
    json.key(name).value(static_cast<std::int64_t>(count));
}

}  // namespace

std::string lintJson(const LintReport& report, const TextFormat&) {
    const LintFindings& findings = report.findings;
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.lint/1"));
    json.key("file").value(std::string_view(report.file));
    json.key("diagnostics").beginArray();
    for (const LintFinding& finding : findings.list()) {
        json.beginObject();
        writeLintFinding(json, finding);
        json.endObject();
    }
    json.endArray();
    writeCount(json, "errors", findings.count(Severity::Error));
    writeCount(json, "warnings", findings.count(Severity::Warning));
    writeCount(json, "notes", findings.count(Severity::Note));
    json.endObject();
    return json.take();
}

}  // namespace vrx
